#include "update/update_info.h"

#include "platform/build_config.h"
#include "platform/ini_file.h"
#include "platform/web_address.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace tollivar::update {

using namespace Qt::StringLiterals;
using platform::IniFile;

namespace {

const QString kTimeForm = u"yyyy-MM-dd HH:mm:ss"_s;
const QString kNoVersion = u"0.0.0.0"_s;
const QString kNeverChecked = u"2011-01-01 21:04:54"_s;

QString webAddress(const QString &text)
{
    return platform::isWebAddress(text) ? text : QString(platform::build::kDownloadPage);
}

/// Digits and dots, up to the first other character.
QString versionIn(const QString &text)
{
    // Four of the largest numbers that are told apart.
    constexpr qsizetype kLongest = 43;
    qsizetype length = 0;
    while (length < std::min(text.size(), kLongest) &&
           ((text[length] >= u'0' && text[length] <= u'9') || text[length] == u'.')) {
        ++length;
    }
    return length == 0 ? kNoVersion : text.left(length);
}

/// What fits on a small screen, in lines of a message box.
constexpr int kMostRows = 20;
constexpr int kColumns = 60;

/// Letters, hangul and ideographs of the East are twice as wide.
constexpr char16_t kFirstWide = 0x1100;

/// Characters that do something to the text around them instead of being seen.
bool isHidden(QChar character)
{
    constexpr char16_t kFirstEmbedding = 0x202A;
    constexpr char16_t kLastOverride = 0x202E;
    constexpr char16_t kFirstIsolate = 0x2066;
    constexpr char16_t kLastIsolate = 0x2069;
    const char16_t code = character.unicode();
    return character.category() == QChar::Other_Control ||
           (code >= kFirstEmbedding && code <= kLastOverride) ||
           (code >= kFirstIsolate && code <= kLastIsolate);
}

/// How much of a line that many rows take.
qsizetype partOf(QStringView line, int rows)
{
    int columns = 0;
    for (qsizetype i = 0; i < line.size(); ++i) {
        columns += line[i].unicode() >= kFirstWide && !line[i].isSurrogate() ? 2 : 1;
        if (columns > rows * kColumns) {
            return i > 0 && line[i].isLowSurrogate() ? i - 1 : i;
        }
    }
    return line.size();
}

/// The rows that a line takes, at least one.
int rowsOf(QStringView line)
{
    int rows = 1;
    while (partOf(line, rows) < line.size()) {
        ++rows;
    }
    return rows;
}

QString fitted(const QString &changes)
{
    static const QRegularExpression lineEnd(u"\\R"_s);
    QStringList lines = changes.split(lineEnd);
    QStringList shown;
    int left = kMostRows;
    for (QString &line : lines) {
        line.replace(u'\t', u' ');
        line.removeIf(isHidden);
        if (left > 0) {
            shown.append(line.left(partOf(line, left)));
            left -= rowsOf(shown.back());
        }
    }
    if (shown != lines) {
        shown.append(u"\u2026"_s);
    }
    return shown.join(u"\r\n"_s);
}

} // namespace

UpdateInfo readUpdateInfo(const QString &path)
{
    const IniFile file(path);
    if (QFileInfo(path).size() > kMaximumInfoBytes) {
        return {.version = kNoVersion,
                .releaseDate = {},
                .changes = {},
                .page = QString(platform::build::kDownloadPage)};
    }
    UpdateInfo info{.version = versionIn(file.read(u"Version", u"Main")),
                    .releaseDate = file.read(u"Version", u"ReleaseDate"),
                    .changes = file.read(u"Version", u"WhatsNew"),
                    .page = webAddress(file.read(u"Version", u"DownloadPage"))};
    info.changes.replace(u"\\r\\n"_s, u"\r\n"_s);
    return info;
}

QDateTime lastCheckTime(const QString &path)
{
    const QString text = IniFile(path).read(u"Check", u"LastCheckTime", kNeverChecked);
    const QDateTime time = QDateTime::fromString(text, kTimeForm);
    return time.isValid() ? time : QDateTime::fromString(kNeverChecked, kTimeForm);
}

void storeCheckTime(const QString &path, const QDateTime &time)
{
    const auto written = IniFile(path).write(u"Check", u"LastCheckTime", time.toString(kTimeForm));
    if (!written) {
        qWarning("%s: %s", qPrintable(path), qPrintable(written.error().text));
    }
}

QString updateQuestion(const UpdateInfo &info, const QString &form)
{
    // In this order: nothing but digits and dots is in a version.
    QString question = form;
    return question.replace(u"%1"_s, info.version).replace(u"%2"_s, fitted(info.changes));
}

} // namespace tollivar::update
