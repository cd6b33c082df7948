#include "app/data_directory.h"
#include "platform/ini_file.h"
#include "settings/settings_store.h"
#include "tests/support/sandbox.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

/// The mark FF FE and "[FILEVER]\r\nVER=16000\r\n", two bytes a character.
QByteArray emptySettings()
{
    QByteArray bytes("\xFF\xFE", 2);
    for (const char character : QByteArray("[FILEVER]\r\nVER=16000\r\n")) {
        bytes += character;
        bytes += '\0';
    }
    return bytes;
}

class DataDirectory : public ::testing::Test {
protected:
    DataDirectory()
    {
        qputenv("XDG_DATA_HOME", m_sandbox.file(QStringLiteral("data")).toUtf8());
        qputenv("XDG_STATE_HOME", m_sandbox.file(QStringLiteral("state")).toUtf8());
    }

    DataPaths setUp()
    {
        const auto paths = setUpData();
        EXPECT_TRUE(paths) << (paths ? "" : qPrintable(paths.error().text));
        return *paths;
    }

    QByteArray settings()
    {
        return m_sandbox.read(QStringLiteral("data/Tollivar Data/settings.ini"));
    }

    void writeSettings(const QByteArray &bytes)
    {
        m_sandbox.write(QStringLiteral("data/Tollivar Data/settings.ini"), bytes);
    }

    static QString installType(const DataPaths &paths)
    {
        return platform::IniFile(paths.installation).read(u"INSTALLINFO", u"InstallType");
    }

    test::Sandbox m_sandbox;
};

TEST_F(DataDirectory, isMadeWithItsFilesNamed)
{
    const DataPaths paths = setUp();

    EXPECT_EQ(paths.directory, m_sandbox.file(QStringLiteral("data/Tollivar Data")));
    EXPECT_TRUE(QDir(paths.directory).exists());
    EXPECT_TRUE(QDir(paths.commonDirectory).exists());
    EXPECT_EQ(paths.tasks, paths.directory + QStringLiteral("/dtasks.db"));
    EXPECT_EQ(paths.legacyTasks, paths.directory + QStringLiteral("/dtasks.ini"));
    EXPECT_EQ(paths.update, paths.directory + QStringLiteral("/update.ini"));
    EXPECT_EQ(paths.updateInTransit, paths.directory + QStringLiteral("/tmpupdate.ini"));
}

TEST_F(DataDirectory, aNewSettingsFileBeginsWithMarkAndFormat)
{
    setUp();
    EXPECT_TRUE(settings().startsWith(emptySettings()));
}

TEST_F(DataDirectory, aCurrentSettingsFileIsKept)
{
    const DataPaths paths = setUp();
    settings::SettingsStore(paths.settings).setNumber(settings::keys::kMaxRetry, 6);

    setUp();

    EXPECT_EQ(settings::SettingsStore(paths.settings).number(settings::keys::kMaxRetry), 6);
}

TEST_F(DataDirectory, anAnsiOrOlderSettingsFileIsReplaced)
{
    const DataPaths paths = setUp();
    const auto older = [](const char *version) {
        QByteArray bytes("\xFF\xFE", 2);
        for (const char character :
             QByteArray("[FILEVER]\r\nVER=") + version + "\r\n[OPTIONS]\r\nMAX_RETRY=6\r\n") {
            bytes += character;
            bytes += '\0';
        }
        return bytes;
    };
    for (const QByteArray &old :
         {QByteArray("[FILEVER]\r\nVER=16000\r\n[OPTIONS]\r\nMAX_RETRY=6\r\n"), older("15999"),
          older(""), QByteArray("\xFF\xFE", 2), QByteArray("\xFF"), QByteArray()}) {
        writeSettings(old);
        setUp();
        EXPECT_EQ(settings(), emptySettings());
        EXPECT_EQ(settings::SettingsStore(paths.settings).number(settings::keys::kMaxRetry), 1);
    }
    writeSettings(older("16001"));
    setUp();
    EXPECT_EQ(settings::SettingsStore(paths.settings).number(settings::keys::kMaxRetry), 6);
}

TEST_F(DataDirectory, theFirstRunSwitchesTheUpdateCheckOn)
{
    const DataPaths paths = setUp();

    EXPECT_EQ(installType(paths), QStringLiteral("Installed"));
    EXPECT_EQ(platform::IniFile(paths.settings).read(u"OPTIONS", u"CHECKUPDATE"),
              QStringLiteral("1"));
}

TEST_F(DataDirectory, anUpgradeSwitchesTheUpdateCheckOnAgain)
{
    const DataPaths paths = setUp();
    const settings::SettingsStore store(paths.settings);
    for (const QStringView type : {QStringView(u"Upgrade"), QStringView(u"")}) {
        store.setNumber(settings::keys::kCheckUpdate, 0);
        ASSERT_TRUE(
            platform::IniFile(paths.installation).write(u"INSTALLINFO", u"InstallType", type));
        setUp();
        const bool isUpgrade = !type.isEmpty();
        EXPECT_EQ(store.number(settings::keys::kCheckUpdate), isUpgrade ? 1 : 0);
    }
}

TEST_F(DataDirectory, anInstalledRecordLeavesBothFilesAlone)
{
    const DataPaths paths = setUp();
    const settings::SettingsStore store(paths.settings);
    store.setNumber(settings::keys::kCheckUpdate, 0);

    setUp();

    EXPECT_EQ(store.number(settings::keys::kCheckUpdate), 0);
}

TEST_F(DataDirectory, aDirectoryThatCannotBeMadeIsNamed)
{
    m_sandbox.write(QStringLiteral("data"), "a file in its place");
    const auto paths = setUpData();
    ASSERT_FALSE(paths);
    EXPECT_EQ(paths.error().text, QStringLiteral("Can not create the application data directory"));
}

TEST_F(DataDirectory, aCommonDirectoryThatCannotBeMadeIsNamed)
{
    m_sandbox.write(QStringLiteral("state"), "a file in its place");
    const auto paths = setUpData();
    ASSERT_FALSE(paths);
    EXPECT_EQ(paths.error().text,
              QStringLiteral("Can not create the application common data directory"));
}

TEST_F(DataDirectory, withoutAHomeTheFoldersAreUnknown)
{
    qunsetenv("HOME");
    qunsetenv("XDG_DATA_HOME");
    EXPECT_EQ(setUpData().error().text,
              QStringLiteral("Can not load the application data directory"));
    qputenv("XDG_DATA_HOME", m_sandbox.file(QStringLiteral("data")).toUtf8());
    qunsetenv("XDG_STATE_HOME");
    EXPECT_EQ(setUpData().error().text,
              QStringLiteral("Can not load the application common data directory"));
}

TEST_F(DataDirectory, settingsThatCannotBeWrittenAreNamed)
{
    QDir().mkpath(m_sandbox.file(QStringLiteral("data/Tollivar Data/settings.ini")));
    const auto paths = setUpData();
    ASSERT_FALSE(paths);
    EXPECT_EQ(paths.error().text, QStringLiteral("Can not release the default settings"));
}

} // namespace
} // namespace tollivar::app
