#include "platform/file_lock.h"
#include "tests/support/sandbox.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using platform::ErrorKind;
using platform::FileLock;

TEST(FileLock, isHeldByOneAtATimeAndFreeAfterwards)
{
    const Sandbox sandbox;
    const QString path = sandbox.file(u"some.lock"_s);
    auto first = FileLock::take(path);
    ASSERT_TRUE(first);
    const auto second = FileLock::take(path);
    ASSERT_FALSE(second);
    EXPECT_EQ(second.error().kind, ErrorKind::TryAgain);
    first->reset();
    EXPECT_TRUE(FileLock::take(path));
    EXPECT_TRUE(QFileInfo::exists(path));
}

TEST(FileLock, keepsWhatTheFileHolds)
{
    const Sandbox sandbox;
    const QString path = sandbox.write(u"some.lock"_s, "content");
    EXPECT_TRUE(FileLock::take(path));
    EXPECT_EQ(sandbox.read(u"some.lock"_s), QByteArray("content"));
}

TEST(FileLock, needsAPlaceForItsFile)
{
    const Sandbox sandbox;
    const auto missing = FileLock::take(sandbox.file(u"missing/some.lock"_s));
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error().kind, ErrorKind::AskUser);
    ASSERT_TRUE(QDir().mkpath(sandbox.file(u"folder.lock"_s)));
    const auto folder = FileLock::take(sandbox.file(u"folder.lock"_s));
    ASSERT_FALSE(folder);
    EXPECT_EQ(folder.error().kind, ErrorKind::AskUser);
}

} // namespace tollivar::test
