#include "tests/companions/capture/capture_fixture.h"

#include <thread>

namespace tollivar::capture {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

/// What is driven here is no browser, or one that fails. Whatever it does: an answer in time, and
/// nothing left behind, which the fixture looks after.
class BrokenBrowserTest : public test::CaptureFixture {
protected:
    /// The engine's failure; the test fails when there is none, or it takes too long.
    [[nodiscard]] platform::Error failureOf(milliseconds limit = seconds(60))
    {
        const auto start = Clock::now();
        const auto found = find(QStringLiteral("http://127.0.0.1:9/"), limit);
        EXPECT_LE(Clock::now() - start, seconds(30));
        if (found) {
            ADD_FAILURE() << "found something";
            return {};
        }
        return found.error();
    }
};

TEST_F(BrokenBrowserTest, aMissingBrowserIsTold)
{
    useBrowser(sandbox().file(QStringLiteral("nothing")));
    EXPECT_EQ(failureOf().kind, platform::ErrorKind::AskUser);
}

TEST_F(BrokenBrowserTest, aMissingGuardianIsTold)
{
    qputenv("PATH", "/usr/bin:/bin");
    EXPECT_EQ(failureOf().kind, platform::ErrorKind::AskUser);
}

TEST_F(BrokenBrowserTest, oneThatEndsAtOnceIsNoticedAtOnce)
{
    useBrowserScript("exit 0");
    EXPECT_EQ(failureOf().text, u"the browser ended by itself");
}

TEST_F(BrokenBrowserTest, oneThatCrashesIsNoticedAtOnce)
{
    useBrowserScript("kill -SEGV $$");
    EXPECT_EQ(failureOf().text, u"the browser ended by itself");
}

TEST_F(BrokenBrowserTest, oneThatIsNoProgramIsNoticedAtOnce)
{
    const QString path = sandbox().write(QStringLiteral("junk"), QByteArray("\x7f"
                                                                            "ELFjunk\0\1",
                                                                            9));
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner));
    useBrowser(path);
    EXPECT_EQ(failureOf().text, u"the browser ended by itself");
}

TEST_F(BrokenBrowserTest, oneThatEndsAfterACommandIsNoticedAtOnce)
{
    useBrowserScript("head -c 10 <&3 >/dev/null");
    EXPECT_EQ(failureOf().text, u"the browser ended by itself");
}

TEST_F(BrokenBrowserTest, oneThatIsSilentIsGivenUpAtTheDeadline)
{
    useBrowserScript("exec sleep 1000");
    EXPECT_EQ(failureOf(seconds(1)).kind, platform::ErrorKind::TryAgain);
}

TEST_F(BrokenBrowserTest, oneThatIsSilentIsGivenUpBeforeALateDeadline)
{
    useBrowserScript("exec sleep 1000");
    EXPECT_EQ(failureOf().text, u"the page could not be shown");
}

TEST_F(BrokenBrowserTest, oneThatTalksNonsenseIsGivenUpAtTheDeadline)
{
    useBrowserScript("while :; do printf '{\"id\":1,\\0<html>\\0\\0[]\\0' >&4; sleep 0.01; done");
    EXPECT_EQ(failureOf(seconds(1)).kind, platform::ErrorKind::TryAgain);
}

TEST_F(BrokenBrowserTest, oneThatNeverEndsItsMessageIsGivenUp)
{
    useBrowserScript("exec cat /dev/zero | tr '\\000' x >&4");
    EXPECT_EQ(failureOf().kind, platform::ErrorKind::TryAgain);
}

TEST_F(BrokenBrowserTest, oneThatFloodsUsWithEmptyMessagesIsGivenUpAtTheDeadline)
{
    useBrowserScript("exec cat /dev/zero >&4");
    EXPECT_EQ(failureOf(seconds(1)).kind, platform::ErrorKind::TryAgain);
}

TEST_F(BrokenBrowserTest, oneThatIsDeafToSignalsAndHidesAChildIsEndedAllTheSame)
{
    useBrowserScript("trap '' TERM INT HUP PIPE\n"
                     "setsid sh -c 'trap \"\" TERM HUP; while :; do sleep 1; done' &\n"
                     "(setsid setsid sleep 1000 &)\n"
                     "while :; do sleep 1; done");
    EXPECT_EQ(failureOf(seconds(1)).kind, platform::ErrorKind::TryAgain);
}

TEST_F(BrokenBrowserTest, aFullProfileIsRemoved)
{
    useBrowserScript("cd \"$HOME\" && mkdir -p a/b/c && touch a/b/c/d .hidden && ln -s / root");
    EXPECT_EQ(failureOf().text, u"the browser ended by itself");
    EXPECT_TRUE(QFile::exists(QStringLiteral("/etc/passwd")));
}

TEST_F(BrokenBrowserTest, isStoppedAtOnce)
{
    useBrowserScript("touch \"$HOME/../started\"; exec sleep 1000");
    const QString started = temporaryFolder() + QStringLiteral("/started");
    Clock::time_point asked;
    std::thread stopper([&] {
        const auto limit = Clock::now() + seconds(30);
        while (!QFile::exists(started) && Clock::now() < limit) {
            std::this_thread::yield();
        }
        asked = Clock::now();
        stop.set();
    });
    EXPECT_EQ(failureOf().text, u"stopped");
    stopper.join();
    EXPECT_LE(Clock::now() - asked, seconds(3));
    QFile::remove(started);
}

} // namespace
} // namespace tollivar::capture
