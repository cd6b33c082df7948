#include "platform/open_external.h"
#include "tests/support/file_manager_service.h"
#include "tests/support/noting_program.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace tollivar::platform {

using namespace Qt::StringLiterals;
using Answer = test::FileManagerService::Answer;

/// A desktop whose opener only notes what it is to open, and a current directory of the test's own.
class OpenExternal : public ::testing::Test {
protected:
    void SetUp() override { QDir::setCurrent(m_sandbox.path()); }
    void TearDown() override { QDir::setCurrent(m_current); }

    test::Sandbox m_sandbox;
    test::DesktopOpener m_opener{m_sandbox};
    QString m_current = QDir::currentPath();
};

TEST_F(OpenExternal, anAddressOfTheWebIsOpenedInItsEncodedForm)
{
    EXPECT_TRUE(openAddress(u"https://site.example/a%20ž?x='$(id)';y"_s));
    EXPECT_EQ(m_opener.waitForFirst(), u"https://site.example/a%20%C5%BE?x='$(id)';y"_s);
}

TEST_F(OpenExternal, anAddressOfAnotherKindIsNotOpened)
{
    for (const QString &address :
         {QString(), u"file:///etc/passwd"_s, u"javascript:alert(1)"_s, u"ftp://site.example/"_s,
          u"--help"_s, u"-http://site.example/"_s, u"http://"_s, u"http:page"_s, u"/etc/passwd"_s,
          u"site.example"_s, u" http://site.example/"_s, u"http://a b/"_s}) {
        EXPECT_FALSE(openAddress(address)) << qPrintable(address);
    }
    EXPECT_TRUE(openAddress(u"http://last.example/"_s));
    EXPECT_EQ(m_opener.waitForFirst(), u"http://last.example/"_s);
}

TEST_F(OpenExternal, aFileIsOpenedByItsAbsolutePathAlone)
{
    const QString file = m_sandbox.write(u"-a \"clip\".mp4"_s, "x");
    EXPECT_FALSE(openPath(u"-a \"clip\".mp4"_s));
    EXPECT_FALSE(openPath(m_sandbox.file(u"missing.mp4"_s)));
    EXPECT_TRUE(openPath(file));
    EXPECT_EQ(m_opener.waitForFirst(), file);
}

TEST_F(OpenExternal, nothingIsOpenedWhereThereIsNoOpener)
{
    qputenv("PATH", {});
    EXPECT_FALSE(openAddress(u"http://site.example/"_s));
    EXPECT_FALSE(openPath(m_sandbox.path()));
}

TEST_F(OpenExternal, aCompanionGetsItsArgumentsAsTheyAre)
{
    const test::NotingProgram player(m_sandbox, u"ClipPlayer"_s);
    QDir::setCurrent(m_sandbox.path());
    const QStringList arguments{u"-file"_s,
                                u"/videos/two  blanks .mp4"_s,
                                u"-x"_s,
                                u"\"quoted\" 'twice'"_s,
                                u"$(id) `id` ; *"_s,
                                u"back\\slash\\"_s,
                                u"Čeština 日本 🎬"_s,
                                u"two\nlines"_s,
                                QString()};
    EXPECT_TRUE(startCompanion(u".\\ClipPlayer.exe"_s, arguments));
    player.waitForStarts(1);
    EXPECT_EQ(player.starts(), std::vector{arguments});
}

TEST_F(OpenExternal, aMissingCompanionIsTold)
{
    EXPECT_FALSE(startCompanion(u".\\NoSuchCompanion.exe"_s, {u"-file"_s, u"/x"_s}));
}

/// A desktop with a message bus; one for all cases, for a process keeps to the first that it finds.
class RevealFile : public OpenExternal {
protected:
    static void SetUpTestSuite() { sharedBus = std::make_unique<test::SessionBus>(); }
    static void TearDownTestSuite() { sharedBus.reset(); }

    static inline std::unique_ptr<test::SessionBus> sharedBus;
    QString m_folder = m_sandbox.file(u"My Videos"_s);
};

TEST_F(RevealFile, theFileManagerIsAskedToShowIt)
{
    const QString file = m_sandbox.write(u"My Videos/a #1 \"ž\"?.mp4"_s, "x");
    test::FileManagerService manager(*sharedBus);
    EXPECT_TRUE(revealFile(file));
    test::waitUntil("the question", [&manager] { return !manager.asked().isEmpty(); });
    EXPECT_EQ(manager.asked(), QStringList{u"file://"_s + m_sandbox.path() +
                                           u"/My%20Videos/a%20%231%20%22%C5%BE%22%3F.mp4"_s});
    // Answers come in their order, so what the first one leads to comes before this.
    manager.answer(Answer::Refuses);
    EXPECT_TRUE(revealFile(m_sandbox.write(u"other/b.mp4"_s, "x")));
    EXPECT_EQ(m_opener.waitForFirst(), m_sandbox.file(u"other"_s));
}

TEST_F(RevealFile, theFolderOpensWhereTheFileManagerRefuses)
{
    const QString file = m_sandbox.write(u"My Videos/a.mp4"_s, "x");
    test::FileManagerService manager(*sharedBus);
    manager.answer(Answer::Refuses);
    EXPECT_TRUE(revealFile(file));
    EXPECT_EQ(m_opener.waitForFirst(), m_folder);
    EXPECT_EQ(manager.asked().size(), 1);
}

TEST_F(RevealFile, theFolderOpensWhereThereIsNoFileManager)
{
    EXPECT_TRUE(revealFile(m_sandbox.write(u"My Videos/a.mp4"_s, "x")));
    EXPECT_EQ(m_opener.waitForFirst(), m_folder);
}

TEST_F(RevealFile, theFolderOpensWhereTheFileWasMovedAway)
{
    const QString file = m_sandbox.write(u"My Videos/a.mp4"_s, "x");
    ASSERT_TRUE(QFile::rename(file, m_sandbox.file(u"elsewhere.mp4"_s)));
    const test::FileManagerService manager(*sharedBus);
    EXPECT_TRUE(revealFile(file));
    EXPECT_EQ(m_opener.waitForFirst(), m_folder);
    EXPECT_TRUE(manager.asked().isEmpty());
}

TEST_F(RevealFile, whereTheFolderIsGoneTooNothingOpens)
{
    EXPECT_FALSE(revealFile(m_folder + u"/a.mp4"_s));
    EXPECT_FALSE(revealFile(u"a.mp4"_s));
    EXPECT_FALSE(revealFile({}));
}

} // namespace tollivar::platform
