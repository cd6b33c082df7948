#include "settings/settings_store.h"
#include "tests/support/sandbox.h"

#include <QDir>

#include <gtest/gtest.h>

#include <set>

namespace tollivar::settings {
namespace {

using test::Sandbox;

class Settings : public ::testing::Test {
protected:
    Settings() : m_path(m_sandbox.file(QStringLiteral("settings.ini"))), m_store(m_path) {}

    void write(const QByteArray &lines) { m_sandbox.write(QStringLiteral("settings.ini"), lines); }

    Sandbox m_sandbox;
    QString m_path;
    SettingsStore m_store;
};

TEST_F(Settings, aMissingFileGivesEveryDefault)
{
    EXPECT_EQ(m_store.number(keys::kMaxRetry), 1);
    EXPECT_EQ(m_store.number(keys::kMaxSimDownloads), 5);
    EXPECT_EQ(m_store.number(keys::kCheckUpdate), 1);
    EXPECT_EQ(m_store.GetTrayInfoShowTime(), 0);
    EXPECT_FALSE(m_store.flag(keys::kOpenFolder));
    EXPECT_FALSE(m_store.flag(keys::kOverwriteExist));
    EXPECT_FALSE(m_store.flag(keys::kNoRemindFlashVersion));
    EXPECT_FALSE(m_store.flag(keys::kMinimizeDragTask));
    EXPECT_TRUE(m_store.flag(keys::kAutoStart));
    EXPECT_TRUE(m_store.flag(keys::kShowDragZone));
    EXPECT_TRUE(m_store.flag(keys::kAutoParseOriginalUrl));
    EXPECT_TRUE(m_store.flag(keys::kMonitorVideoSite));
    EXPECT_EQ(m_store.GetLanguage(), QString());
}

TEST_F(Settings, aFlagIsTrueForTheWordInAnyCaseAndBlanks)
{
    write("[OPTIONS]\nAUTOSTART= TrUe \nSHOW_DRAGZONE=1\nMONITOR_YOUTUBEURL=yes\n"
          "AUTOPARSE_ORIGINALURL=\n");

    EXPECT_TRUE(m_store.flag(keys::kAutoStart));
    EXPECT_FALSE(m_store.flag(keys::kShowDragZone));
    EXPECT_FALSE(m_store.flag(keys::kMonitorVideoSite));
    EXPECT_FALSE(m_store.flag(keys::kAutoParseOriginalUrl));
}

TEST_F(Settings, aNumberThatIsNoneReadsAsZero)
{
    write("[OPTIONS]\nMAX_SIMDOWNLOADS=abc\nMAX_RETRY= 7x\n");

    EXPECT_EQ(m_store.number(keys::kMaxSimDownloads), 0);
    EXPECT_EQ(m_store.number(keys::kMaxRetry), 7);
}

TEST_F(Settings, whatIsSetIsReadBackAtOnceByAnother)
{
    m_store.setFlag(keys::kShowDragZone, false);
    m_store.setNumber(keys::kMaxRetry, 4);
    m_store.SetLanguage(QStringLiteral("Deutsch"));

    const SettingsStore other(m_path);
    EXPECT_FALSE(other.flag(keys::kShowDragZone));
    EXPECT_EQ(other.text(keys::kShowDragZone), QStringLiteral("FALSE"));
    EXPECT_EQ(other.number(keys::kMaxRetry), 4);
    EXPECT_EQ(other.GetLanguage(), QStringLiteral("Deutsch"));
}

TEST_F(Settings, withoutALastFolderOneAmongTheDocumentsIsMadeButNotStored)
{
    qputenv("XDG_DOCUMENTS_DIR", m_sandbox.file(QStringLiteral("Documents")).toUtf8());

    const QString folder = m_store.GetLastFolder();

    EXPECT_EQ(folder, m_sandbox.file(QStringLiteral("Documents/My Flash Videos")));
    EXPECT_TRUE(QDir(folder).exists());
    EXPECT_EQ(m_store.text(keys::kLastFolder), QString());
    qunsetenv("XDG_DOCUMENTS_DIR");
}

TEST_F(Settings, aLastFolderIsKept)
{
    m_store.SetLastFolder(QStringLiteral("/videos/"));
    EXPECT_EQ(m_store.GetLastFolder(), QStringLiteral("/videos/"));
}

TEST_F(Settings, aFailedWriteChangesNothing)
{
    const SettingsStore nowhere(QStringLiteral("/no/such/folder/settings.ini"));
    nowhere.setNumber(keys::kMaxRetry, 9);
    EXPECT_EQ(nowhere.number(keys::kMaxRetry), 1);
}

TEST(SettingTable, holdsEveryKeyOnce)
{
    std::set<QString> names;
    for (const Setting &setting : kSettingTable) {
        names.insert(setting.section.toString() + setting.key.toString());
    }
    EXPECT_EQ(names.size(), 19U);
}

} // namespace
} // namespace tollivar::settings
