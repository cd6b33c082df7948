#include "companions/capture/profile_folder.h"
#include "platform/file_lock.h"
#include "tests/support/sandbox.h"

#include <QDir>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <filesystem>

namespace tollivar::capture {
namespace {

class ProfileFolderTest : public ::testing::Test {
protected:
    ProfileFolderTest() { qputenv("TMPDIR", m_sandbox.path().toUtf8()); }
    ~ProfileFolderTest() override { qunsetenv("TMPDIR"); }

    /// A folder as an earlier start made it, last changed an hour ago.
    QString makeOldFolder(const QString &name)
    {
        const QString file = m_sandbox.write(name + QStringLiteral("/Default/Cookies"), "x");
        const QString folder = m_sandbox.file(name);
        makeOld(folder);
        return folder;
    }
    static void makeOld(const QString &folder)
    {
        using std::filesystem::file_time_type;
        std::filesystem::last_write_time(folder.toStdString(),
                                         file_time_type::clock::now() - std::chrono::hours(1));
    }

    test::Sandbox m_sandbox;
};

TEST_F(ProfileFolderTest, isAFreePathOfItsOwnEachTime)
{
    const auto path = newProfilePath();
    ASSERT_TRUE(path);
    EXPECT_TRUE(path->startsWith(m_sandbox.path() + QLatin1Char('/')));
    EXPECT_FALSE(QFile::exists(*path));
    const auto other = newProfilePath();
    ASSERT_TRUE(other);
    EXPECT_NE(*path, *other);
}

TEST_F(ProfileFolderTest, whatAnEarlierStartLeftBehindIsRemoved)
{
    const QString left = makeOldFolder(QStringLiteral("tollivar-capture-left"));
    ASSERT_TRUE(newProfilePath());
    EXPECT_FALSE(QFile::exists(left));
}

TEST_F(ProfileFolderTest, whatAGuardianHoldsIsKept)
{
    const QString held = makeOldFolder(QStringLiteral("tollivar-capture-held"));
    const auto lock = platform::FileLock::take(held + QStringLiteral("/guardian.lock"));
    ASSERT_TRUE(lock);
    makeOld(held);
    ASSERT_TRUE(newProfilePath());
    EXPECT_TRUE(QFile::exists(held + QStringLiteral("/Default/Cookies")));
}

TEST_F(ProfileFolderTest, whatIsYoungIsKept)
{
    const auto young = newProfilePath();
    ASSERT_TRUE(young);
    ASSERT_TRUE(QDir().mkpath(*young));
    ASSERT_TRUE(newProfilePath());
    EXPECT_TRUE(QFile::exists(*young));
}

TEST_F(ProfileFolderTest, whatIsNotOursIsKept)
{
    const QString other = makeOldFolder(QStringLiteral("something-else"));
    const QString elsewhere = makeOldFolder(QStringLiteral("target"));
    const QString link = m_sandbox.file(QStringLiteral("tollivar-capture-link"));
    ASSERT_TRUE(QFile::link(elsewhere, link));
    ASSERT_TRUE(newProfilePath());
    EXPECT_TRUE(QFile::exists(other));
    EXPECT_TRUE(QFile::exists(elsewhere + QStringLiteral("/Default/Cookies")));
}

TEST_F(ProfileFolderTest, noPlaceForFoldersIsAFailure)
{
    qputenv("TMPDIR", m_sandbox.file(QStringLiteral("missing")).toUtf8());
    const auto folder = newProfilePath();
    ASSERT_FALSE(folder);
    EXPECT_EQ(folder.error().kind, platform::ErrorKind::AskUser);
}

} // namespace
} // namespace tollivar::capture
