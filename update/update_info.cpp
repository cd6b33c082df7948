#include "update/update_info.h"

#include "platform/build_config.h"
#include "platform/ini_file.h"
#include "platform/web_address.h"

#include <QFileInfo>

namespace tollivar::update {

using namespace Qt::StringLiterals;
using platform::IniFile;

namespace {

const QString kTimeForm = u"yyyy-MM-dd HH:mm:ss"_s;
const QString kNeverChecked = u"2011-01-01 21:04:54"_s;

QString webAddress(const QString &text)
{
    return platform::isWebAddress(text) ? text : QString(platform::build::kDownloadPage);
}

} // namespace

UpdateInfo readUpdateInfo(const QString &path)
{
    const IniFile file(path);
    if (QFileInfo(path).size() > kMaximumInfoBytes) {
        return {.version = u"0.0.0.0"_s,
                .releaseDate = {},
                .changes = {},
                .page = QString(platform::build::kDownloadPage)};
    }
    UpdateInfo info{.version = file.read(u"Version", u"Main", u"0.0.0.0"_s),
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

QString updateQuestion(const UpdateInfo &info, Notice notice)
{
    const QString separator = notice == Notice::First ? u","_s : u", "_s;
    return u"A new version("_s + info.version + u") of Tollivar is available"_s + separator +
           u"would you like to download it now?\r\n\r\nWhat's New?\r\n"_s + info.changes +
           u"\r\n\r\nClick Yes to download, click No to cancel."_s;
}

} // namespace tollivar::update
