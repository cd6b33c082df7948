#include "companions/clip_player/local_file.h"
#include "tests/support/sandbox.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace tollivar::player {
namespace {

using namespace Qt::StringLiterals;

QString reason(const QString &name)
{
    const auto path = playableFile(name);
    return path ? QString() : path.error().text;
}

TEST(LocalFile, whatCannotBePlayedIsToldInASentence)
{
    const test::Sandbox sandbox;
    EXPECT_EQ(reason(sandbox.file(u"gone.mp4"_s)), u"“gone.mp4” does not exist."_s);
    EXPECT_EQ(reason(sandbox.write(u"empty.mp4"_s, {})), u"“empty.mp4” is empty."_s);
    QDir(sandbox.path()).mkdir(u"folder"_s);
    EXPECT_EQ(reason(sandbox.file(u"folder"_s)), u"“folder” is a folder, not a file."_s);
    EXPECT_EQ(reason(sandbox.write(u"list.mp4"_s, "#EXTM3U\na.mp4\n")),
              u"“list.mp4” only names other files; open one of those."_s);
    EXPECT_EQ(reason(u"/dev/zero"_s), u"“zero” is not an ordinary file."_s);
}

TEST(LocalFile, aPipeIsNotWaitedFor)
{
    const test::Sandbox sandbox;
    const QString pipe = sandbox.file(u"pipe.mp4"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(reason(pipe), u"“pipe.mp4” is not an ordinary file."_s);
}

TEST(LocalFile, addressesAreRefused)
{
    for (const QString &address : {u"http://127.0.0.1/a.mp4"_s, u"https://a.example/"_s,
                                   u"rtmp://a/b"_s, u"file:///etc/passwd"_s, u"memory://abc"_s,
                                   u"lavfi://testsrc"_s, u"edl://a.mp4"_s, u"av://x11grab"_s}) {
        EXPECT_EQ(reason(address), u"Only files on this computer can be played, not addresses."_s);
    }
}

TEST(LocalFile, namesAreFilesWhateverTheyLookLike)
{
    const test::Sandbox sandbox;
    const QString back = QDir::currentPath();
    QDir::setCurrent(sandbox.path());
    for (const QString &name : {u"-"_s, u"-v"_s, u"http:"_s, u"a%d.mp4"_s, u"fd:0"_s}) {
        sandbox.write(name, "media");
        EXPECT_EQ(playableFile(name).value_or(QString()), sandbox.file(name));
    }
    QDir::setCurrent(back);
}

} // namespace
} // namespace tollivar::player
