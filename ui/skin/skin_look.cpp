#include "ui/skin/skin_look.h"

#include "ui/skin/paint_manager.h"
#include "ui/skin/skin_source.h"

#include <QApplication>
#include <QDir>
#include <QPalette>
#include <QRegularExpression>
#include <QStyle>
#include <QStyleFactory>

#include <atomic>
#include <optional>

namespace tollivar::DuiLib {

namespace {

const QString &sheetName()
{
    static const QString name = QStringLiteral("skin.qss");
    return name;
}

std::atomic<bool> sheetIsBroken{false};
QtMessageHandler previousHandler = nullptr;

void noticeBrokenSheet(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message.contains(QStringLiteral("Could not parse"))) {
        sheetIsBroken = true;
        return;
    }
    if (previousHandler != nullptr) {
        previousHandler(type, context, message);
    }
}

/// Qt tells about a broken style sheet by a warning alone.
bool isWellFormed(const QString &sheet)
{
    sheetIsBroken = false;
    previousHandler = qInstallMessageHandler(noticeBrokenSheet);
    {
        QWidget probe;
        probe.setStyleSheet(sheet);
        probe.ensurePolished();
    }
    qInstallMessageHandler(previousHandler);
    return !sheetIsBroken;
}

int lineOf(const QString &text, qsizetype position)
{
    return static_cast<int>(QStringView(text).left(position).count(u'\n')) + 1;
}

/// Images come from "skin:" alone; everything else could be any file of the person's.
std::optional<SkinProblem> foreignAddress(const QString &sheet)
{
    static const QRegularExpression address(QStringLiteral(R"re(url\s*\(\s*["']?([^)"']*))re"),
                                            QRegularExpression::CaseInsensitiveOption);
    auto matches = address.globalMatch(sheet);
    while (matches.hasNext()) {
        const auto match = matches.next();
        const QString target = match.captured(1);
        if (!target.startsWith(QStringLiteral("skin:")) || target.contains(QStringLiteral("..")) ||
            target.contains(u'\\')) {
            return SkinProblem{sheetName(), lineOf(sheet, match.capturedStart()),
                               QStringLiteral("\"%1\" is not a file of the skin").arg(target)};
        }
    }
    return std::nullopt;
}

std::optional<QString> usableSheet(const SkinSource &source)
{
    const auto bytes = source.read(sheetName());
    if (!bytes) {
        CPaintManagerUI::addProblem({sheetName(), 0, bytes.error().text});
        return std::nullopt;
    }
    const QString sheet = QString::fromUtf8(*bytes);
    if (const auto foreign = foreignAddress(sheet)) {
        CPaintManagerUI::addProblem(*foreign);
        return std::nullopt;
    }
    if (!isWellFormed(sheet)) {
        CPaintManagerUI::addProblem(
            {sheetName(), 0, QStringLiteral("the style sheet cannot be read")});
        return std::nullopt;
    }
    return sheet;
}

QPalette lightPalette()
{
    QPalette palette(QColor(0xf5, 0xf7, 0xfa));
    palette.setColor(QPalette::Window, QColor(0xf5, 0xf7, 0xfa));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xee, 0xf2, 0xf7));
    palette.setColor(QPalette::Highlight, QColor(0x2d, 0x73, 0xc4));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x2d, 0x73, 0xc4));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, QColor(0x1f, 0x29, 0x37));
        palette.setColor(QPalette::Disabled, role, QColor(0xa3, 0xad, 0xbb));
    }
    palette.setColor(QPalette::PlaceholderText, QColor(0x94, 0x9f, 0xae));
    return palette;
}

} // namespace

void applyLook(const std::vector<SkinSource> &sources)
{
    QStringList roots;
    for (const auto &source : sources) {
        roots.append(source.root());
    }
    QDir::setSearchPaths(QStringLiteral("skin"), roots);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(lightPalette());
    for (const auto &source : sources) {
        if (const auto sheet = usableSheet(source)) {
            qApp->setStyleSheet(*sheet);
            return;
        }
    }
}

} // namespace tollivar::DuiLib
