#include "platform/file_ops.h"
#include "tests/support/sandbox.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace tollivar::platform {
namespace {

using namespace Qt::StringLiterals;

TEST(MakeFolders, makesEveryMissingLevelAndBearsASlashAtTheEnd)
{
    const test::Sandbox sandbox;
    EXPECT_TRUE(makeFolders(sandbox.file(u"a/b/c/"_s)));
    EXPECT_TRUE(QDir(sandbox.file(u"a/b/c"_s)).exists());
    EXPECT_TRUE(makeFolders(sandbox.file(u"a/b/c"_s)));
}

TEST(MakeFolders, refusesARelativePathAndCreatesNothing)
{
    const test::Sandbox sandbox;
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(sandbox.path()));
    EXPECT_FALSE(makeFolders(u"a/b"_s));
    EXPECT_FALSE(makeFolders(QString()));
    EXPECT_FALSE(QDir(sandbox.file(u"a"_s)).exists());
    EXPECT_TRUE(QDir::setCurrent(before));
}

TEST(MakeFolders, failsBelowAFile)
{
    const test::Sandbox sandbox;
    const QString file = sandbox.write(u"file"_s, "x");
    EXPECT_FALSE(makeFolders(file + u"/a"_s));
    EXPECT_FALSE(makeFolders(file));
}

TEST(Exists, isFalseOnlyWhereNothingCanBe)
{
    const test::Sandbox sandbox;
    const QString file = sandbox.write(u"file"_s, "x");
    EXPECT_TRUE(exists(file));
    EXPECT_TRUE(exists(sandbox.path()));
    EXPECT_FALSE(exists(sandbox.file(u"missing"_s)));
    EXPECT_FALSE(exists(file + u"/below"_s));
    // A link to itself can be seen, but not what it leads to.
    ASSERT_TRUE(QFile::link(sandbox.file(u"loop"_s), sandbox.file(u"loop"_s)));
    EXPECT_TRUE(exists(sandbox.file(u"loop"_s)));
    EXPECT_TRUE(exists(sandbox.file(u"loop/below"_s)));
}

} // namespace
} // namespace tollivar::platform
