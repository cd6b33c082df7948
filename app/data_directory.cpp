#include "app/data_directory.h"

#include "platform/file_ops.h"
#include "platform/ini_file.h"
#include "platform/paths.h"
#include "settings/setting_table.h"

#include <QFile>
#include <QtEndian>

namespace tollivar::app {

using platform::ErrorKind;
using platform::failure;
using platform::Result;

namespace {

constexpr int kSettingsFormat = 16'000;
constexpr QByteArrayView kByteOrderMark("\xFF\xFE", 2);

const QString kInstallSection = QStringLiteral("INSTALLINFO");
const QString kInstallKey = QStringLiteral("InstallType");

/// An empty settings file: the mark and the format's number.
QByteArray emptySettings()
{
    const QString text = QStringLiteral("[FILEVER]\r\nVER=%1\r\n").arg(kSettingsFormat);
    QByteArray bytes(text.size() * 2, Qt::Uninitialized);
    qToLittleEndian<char16_t>(text.utf16(), text.size(), bytes.data());
    return kByteOrderMark.toByteArray() + bytes;
}

bool isCurrentSettings(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.read(kByteOrderMark.size()) != kByteOrderMark) {
        return false;
    }
    const platform::IniFile ini(path);
    return platform::iniNumber(ini.read(u"FILEVER", u"VER")) >= kSettingsFormat;
}

Result<void> makeDirectory(const QString &path, const QString &message)
{
    if (const auto made = platform::makeFolders(path); !made) {
        return failure(ErrorKind::AskUser, message, made.error().systemCode);
    }
    return {};
}

/// A failed write is no reason not to start: the update check then stays as it is.
void keepInstallationRecord(const DataPaths &paths)
{
    const platform::IniFile record(paths.installation);
    if (!platform::exists(paths.installation)) {
        if (!platform::replaceFile(paths.installation, emptySettings())) {
            return;
        }
    }
    const QString upgraded = QStringLiteral("Upgrade");
    if (record.read(kInstallSection, kInstallKey, upgraded) != upgraded) {
        return;
    }
    const settings::Setting &check = settings::keys::kCheckUpdate;
    static_cast<void>(platform::IniFile(paths.settings)
                          .write(check.section.toString(), check.key.toString(), u"1"));
    static_cast<void>(record.write(kInstallSection, kInstallKey, u"Installed"));
}

} // namespace

Result<DataPaths> locateData()
{
    const auto directory = platform::dataDirectory();
    if (!directory) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("Can not load the application data directory"));
    }
    const auto common = platform::commonDirectory();
    if (!common) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("Can not load the application common data directory"));
    }
    return DataPaths{
        .directory = *directory,
        .commonDirectory = *common,
        .settings = *directory + QStringLiteral("/settings.ini"),
        .update = *directory + QStringLiteral("/update.ini"),
        .updateInTransit = *directory + QStringLiteral("/tmpupdate.ini"),
        .legacyTasks = *directory + QStringLiteral("/dtasks.ini"),
        .tasks = *directory + QStringLiteral("/dtasks.db"),
        .installation = *common + QStringLiteral("/installdata.ini"),
    };
}

Result<DataPaths> setUpData()
{
    auto paths = locateData();
    if (!paths) {
        return paths;
    }
    if (const auto made = makeDirectory(
            paths->directory, QStringLiteral("Can not create the application data directory"));
        !made) {
        return tl::unexpected(made.error());
    }
    if (const auto made =
            makeDirectory(paths->commonDirectory,
                          QStringLiteral("Can not create the application common data directory"));
        !made) {
        return tl::unexpected(made.error());
    }
    if (!isCurrentSettings(paths->settings) &&
        !platform::replaceFile(paths->settings, emptySettings())) {
        return failure(ErrorKind::AskUser, QStringLiteral("Can not release the default settings"));
    }
    keepInstallationRecord(*paths);
    return paths;
}

} // namespace tollivar::app
