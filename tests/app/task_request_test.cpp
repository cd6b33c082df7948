#include "app/task_request.h"
#include "tests/support/sandbox.h"

#include <QDir>

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

using tasks::DownloadMethod;

class NewTask : public ::testing::Test {
protected:
    TaskRequest request(const QString &address) const
    {
        return {.address = address, .folder = m_sandbox.file(QStringLiteral("videos"))};
    }

    test::Sandbox m_sandbox;
};

TEST_F(NewTask, aPageIsNamedAfterItsTitleLater)
{
    const auto task = newTask(request(QStringLiteral("example.org/watch/clip-1")));

    ASSERT_TRUE(task);
    EXPECT_EQ(task->strOriURL, QStringLiteral("http://example.org/watch/clip-1"));
    EXPECT_EQ(task->bAutoRename, 1);
    EXPECT_EQ(task->nModeLow, 0);
    EXPECT_EQ(task->strFileType, QStringLiteral(".flv"));
    EXPECT_EQ(task->strOutputName, QStringLiteral("hclip-1"));
    EXPECT_EQ(task->strOutputFolder, m_sandbox.file(QStringLiteral("videos/")));
    EXPECT_TRUE(QDir(task->strOutputFolder).exists());
}

TEST_F(NewTask, aStreamIsDirectByItselfAndComesAsFlashVideo)
{
    for (const auto *scheme : {"rtmp", "rtmpe", "rtmpt", "rtmpte", "rtmps", "RTMPTS"}) {
        const auto task = newTask(request(QString::fromLatin1(scheme) +
                                          QStringLiteral("://media.example/app/mp4:show.mp4")));
        ASSERT_TRUE(task) << scheme;
        EXPECT_EQ(task->nModeLow, static_cast<int>(DownloadMethod::Direct));
        EXPECT_EQ(task->nProtocol, 0);
        EXPECT_EQ(task->strDownloadUrl, task->strOriURL);
        EXPECT_EQ(task->strFileType, QStringLiteral(".flv"));
        EXPECT_FALSE(task->strOutputName.isEmpty());
        EXPECT_EQ(task->bAutoRename, 0);
    }
}

TEST_F(NewTask, aWatchPageIsNamedAfterItsVideo)
{
    const auto task = newTask(request(QStringLiteral("http://www.youtube.com/watch?v=abcdefghij")));
    ASSERT_TRUE(task);
    EXPECT_EQ(task->strOutputName, QStringLiteral("abcdefghij"));
}

TEST_F(NewTask, aNameOfItsOwnIsKeptWithoutForbiddenCharacters)
{
    TaskRequest asked = request(QStringLiteral("http://example.org/"));
    asked.name = QStringLiteral(" ../a:b ");
    const auto task = newTask(asked);
    ASSERT_TRUE(task);
    EXPECT_EQ(task->strOutputName, QStringLiteral("..-a-b"));
    EXPECT_EQ(task->bAutoRename, 0);
}

TEST_F(NewTask, aDirectAddressGivesNameAndType)
{
    TaskRequest asked = request(QStringLiteral("http://example.org/a/My%20Clip.MP4?x=1.y"));
    asked.method = DownloadMethod::Direct;
    const auto task = newTask(asked);
    ASSERT_TRUE(task);
    EXPECT_EQ(task->strOutputName, QStringLiteral("My Clip"));
    EXPECT_EQ(task->strFileType, QStringLiteral(".MP4"));
    EXPECT_EQ(task->strDownloadUrl, task->strOriURL);
    EXPECT_EQ(task->nModeLow, 6);
}

TEST_F(NewTask, aDirectAddressCannotLeaveTheFolderNorHideAProgram)
{
    TaskRequest asked = request(QStringLiteral("http://example.org/%2e%2e%2f%2e%2e%2fx.sh"));
    asked.method = DownloadMethod::Direct;
    const auto task = newTask(asked);
    ASSERT_TRUE(task);
    EXPECT_FALSE(task->strOutputName.contains(u'/'));
    EXPECT_EQ(task->strFileType, QStringLiteral(".sh.download"));
}

TEST_F(NewTask, aDirectAddressWithoutAnEndingHasNoType)
{
    TaskRequest asked = request(QStringLiteral("http://example.org/stream"));
    asked.method = DownloadMethod::Direct;
    const auto task = newTask(asked);
    ASSERT_TRUE(task);
    EXPECT_EQ(task->strOutputName, QStringLiteral("stream"));
    EXPECT_EQ(task->strFileType, QString());
}

TEST_F(NewTask, aFlashPageExpectsAFlashFile)
{
    TaskRequest asked = request(QStringLiteral("http://example.org/"));
    asked.method = DownloadMethod::Flash;
    asked.quality = 3;
    const auto task = newTask(asked);
    ASSERT_TRUE(task);
    EXPECT_EQ(task->strFileType, QStringLiteral(".swf"));
    EXPECT_EQ(task->nModeHigh, 3);
}

TEST_F(NewTask, aFolderThatCannotBeMadeIsRefused)
{
    m_sandbox.write(QStringLiteral("videos"), "a file in its place");
    EXPECT_FALSE(newTask(request(QStringLiteral("http://example.org/"))));
    TaskRequest relative = request(QStringLiteral("http://example.org/"));
    relative.folder = QStringLiteral("videos");
    EXPECT_FALSE(newTask(relative));
}

TEST(CheckedAddress, otherSchemesAreRefused)
{
    for (const QString &address :
         {QStringLiteral("ftp://a/b"), QStringLiteral("file:///etc/passwd"),
          QStringLiteral("javascript:alert(1)"), QStringLiteral("mailto:a@b"), QStringLiteral("  "),
          QStringLiteral("http://"), QString(40'000, u'a')}) {
        EXPECT_FALSE(checkedAddress(address)) << qPrintable(address.left(40));
    }
}

TEST(CheckedAddress, aMissingSchemeIsFilledInAlsoBeforeAPort)
{
    EXPECT_EQ(checkedAddress(QStringLiteral(" localhost:8080/x ")),
              QStringLiteral("http://localhost:8080/x"));
    EXPECT_EQ(checkedAddress(QStringLiteral("HTTPS://a.org/")), QStringLiteral("HTTPS://a.org/"));
}

TEST(TaskRequests, surviveTheWayToTheRunningProgram)
{
    const std::vector<TaskRequest> requests = {
        {.address = QStringLiteral("http://a/\"'\n"),
         .folder = QStringLiteral("/x y/"),
         .name = QStringLiteral("ü"),
         .method = DownloadMethod::Direct,
         .quality = 6},
        {.address = QStringLiteral("http://b/")},
    };
    const auto decoded = decodeTaskRequests(encodeTaskRequests(requests));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(*decoded, requests);
}

TEST(TaskRequests, whatIsNoListIsRefused)
{
    for (const QByteArray &text :
         {QByteArray(), QByteArray("{}"), QByteArray("[1]"), QByteArray("[{\"method\":5}]"),
          QByteArray("[{\"method\":0,\"quality\":9}]"), QByteArray(100'000, '[')}) {
        EXPECT_FALSE(decodeTaskRequests(text)) << text.left(40).constData();
    }
}

} // namespace
} // namespace tollivar::app
