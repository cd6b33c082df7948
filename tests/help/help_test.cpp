#include "app/language/string_table.h"
#include "tasks/api/failure_text.h"
#include "tasks/api/status_text.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

namespace tollivar {
namespace {

using namespace Qt::StringLiterals;
using tasks::ErrorKind;
using tasks::TaskFailure;
using tasks::TaskState;

/// The guide as it is written.
class Help : public ::testing::Test {
protected:
    [[nodiscard]] static QString read(const QString &name)
    {
        QFile file(QStringLiteral(TOLLIVAR_HELP "/") + name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return QString::fromUtf8(file.readAll());
    }

    [[nodiscard]] static QStringList pages()
    {
        return QDir(QStringLiteral(TOLLIVAR_HELP)).entryList({u"*.html"_s});
    }

    /// The values of an attribute.
    [[nodiscard]] static QStringList values(const QString &page, const QString &attribute)
    {
        QStringList found;
        const QRegularExpression pattern(u"\\s%1=\"([^\"]*)\""_s.arg(attribute));
        for (auto match = pattern.globalMatch(page); match.hasNext();) {
            found.append(match.next().captured(1));
        }
        return found;
    }

    /// What a reader sees.
    [[nodiscard]] static QString textOf(QString page)
    {
        static const QRegularExpression kTag(u"<[^>]*>"_s);
        page.remove(kTag);
        return page.replace(u"&lt;"_s, u"<"_s)
            .replace(u"&gt;"_s, u">"_s)
            .replace(u"&quot;"_s, u"\""_s)
            .replace(u"&amp;"_s, u"&"_s);
    }

    static void expectInTroublePage(const QString &text)
    {
        static const QString kPage = textOf(read(u"trouble.html"_s));
        EXPECT_FALSE(text.trimmed().isEmpty());
        EXPECT_TRUE(kPage.contains(text.trimmed())) << text.toStdString();
    }
};

TEST_F(Help, everyLinkLeadsToAPageAndAPlaceThatAreThere)
{
    for (const QString &name : pages()) {
        const QString page = read(name);
        EXPECT_EQ(page.count(u"href="_s), values(page, u"href"_s).size()) << name.toStdString();
        for (const QString &link : values(page, u"href"_s)) {
            const QString target = link.section(u'#', 0, 0);
            const QString place = link.section(u'#', 1);
            ASSERT_TRUE(QFile::exists(QStringLiteral(TOLLIVAR_HELP "/") + target))
                << name.toStdString() << ": " << link.toStdString();
            EXPECT_TRUE(place.isEmpty() || values(read(target), u"id"_s).contains(place))
                << name.toStdString() << ": " << link.toStdString();
        }
    }
}

TEST_F(Help, everyPageIsReachedFromEveryOther)
{
    ASSERT_GE(pages().size(), 7);
    for (const QString &name : pages()) {
        const QStringList links = values(read(name), u"href"_s);
        for (const QString &other : pages()) {
            EXPECT_TRUE(links.contains(other)) << name.toStdString() << ", " << other.toStdString();
        }
    }
}

TEST_F(Help, pagesLoadNothingFromElsewhereAndRunNothing)
{
    static const QRegularExpression kForbidden(
        u"<script|\\son\\w+=|javascript:|\\ssrc=|<iframe|<object|\\sstyle="_s,
        QRegularExpression::CaseInsensitiveOption);
    for (const QString &name : pages()) {
        const QString page = read(name);
        EXPECT_FALSE(page.contains(kForbidden)) << name.toStdString();
        EXPECT_TRUE(page.contains(u"<link rel=\"stylesheet\" href=\"style.css\">"_s));
    }
    const QString style = read(u"style.css"_s);
    EXPECT_FALSE(style.contains(u"url("_s) || style.contains(u"@import"_s));
}

TEST_F(Help, elementsAreClosedInTheOrderInWhichTheyWereOpened)
{
    const QSet<QString> single{u"meta"_s, u"link"_s, u"br"_s};
    static const QRegularExpression kTag(u"<(/?)([a-z0-9]+)[^>]*>"_s);
    for (const QString &name : pages()) {
        const QString page = read(name);
        QStringList open;
        for (auto match = kTag.globalMatch(page); match.hasNext();) {
            const auto tag = match.next();
            const QString element = tag.captured(2);
            if (single.contains(element)) {
                continue;
            }
            if (tag.captured(1).isEmpty()) {
                open.append(element);
            } else {
                ASSERT_FALSE(open.isEmpty()) << name.toStdString();
                ASSERT_EQ(open.takeLast(), element) << name.toStdString();
            }
        }
        EXPECT_TRUE(open.isEmpty()) << name.toStdString();
    }
}

TEST_F(Help, everyFailureOfATaskIsExplained)
{
    for (const TaskState stage : {TaskState::ResolvingPage, TaskState::Downloading}) {
        expectInTroublePage(tasks::failureText(stage));
    }
    // As the database's short texts say it.
    for (const int code : {5, 6}) {
        expectInTroublePage(tasks::statusText(code, 0).text.value_or(QString()));
    }
    for (const TaskFailure failure :
         {TaskFailure{ErrorKind::Network, 0}, TaskFailure{ErrorKind::HttpStatus, 401},
          TaskFailure{ErrorKind::HttpStatus, 403}, TaskFailure{ErrorKind::HttpStatus, 404},
          TaskFailure{ErrorKind::CannotCreateFile, 0}}) {
        // The dash stands with or without a blank before and behind it.
        expectInTroublePage(tasks::failureReason(failure).remove(u"-"_s));
    }
    // Every other number of a server.
    expectInTroublePage(
        tasks::failureReason({ErrorKind::HttpStatus, 500}).remove(u"-"_s).trimmed());
}

TEST_F(Help, everyMessageAboutATroubleIsExplained)
{
    // Questions, answers, and what only goes on from another text.
    static const QSet<QString> kOthers{u"strMsgRemoveAll"_s,    u"strMsgCompletedTasks"_s,
                                       u"strMsgConvertAll"_s,   u"strMsgFlashOld2"_s,
                                       u"strMsgFlashVersion"_s, u"strMsgUpdateNews"_s,
                                       u"strMsgUpdateKnown"_s,  u"strMsgNoUpdate"_s};
    static const QRegularExpression kTrouble(u"^str(Msg|No[A-Z](?!te)|SkinProblems)"_s);
    for (const auto &text : language::builtInTexts()) {
        const QString id = text.id.toString();
        if (!id.contains(kTrouble) || kOthers.contains(id)) {
            continue;
        }
        // The first sentence finds it.
        expectInTroublePage(
            text.english.toString().section(u". "_s, 0, 0).replace(u"%1"_s, u"…"_s));
    }
}

} // namespace
} // namespace tollivar
