#include "tests/companions/capture/capture_fixture.h"
#include "tests/support/wait_until.h"

#include <QProcess>

#include <csignal>

namespace tollivar::capture {
namespace {

using std::chrono::seconds;
using test::neverAnswer;
using test::page;
using test::waitUntil;

/// PageProbe, killed in the midst of its work: nothing may be left behind, neither a process nor a
/// profile folder.
class KilledOwnerTest : public test::CaptureFixture {
protected:
    /// Starts PageProbe on a page of the site.
    void start(const QByteArray &path)
    {
        m_probe.start(QStringLiteral(TOLLIVAR_PROGRAM_DIRECTORY "/PageProbe"),
                      {QStringLiteral("-url"), site.address(path), QStringLiteral("-parsemode"),
                       QStringLiteral("PARSE_MODE_IE7"), QStringLiteral("-parsetype"),
                       QStringLiteral("PARSE_TYPE_AUTO"), QStringLiteral("-sniffcache"),
                       QStringLiteral("false")});
        ASSERT_TRUE(m_probe.waitForStarted());
    }

    /// Ends it in a way that it cannot notice, and waits until nothing of it is left.
    void killAndWait()
    {
        ::kill(static_cast<pid_t>(m_probe.processId()), SIGKILL);
        ASSERT_TRUE(m_probe.waitForFinished());
        EXPECT_EQ(m_probe.exitStatus(), QProcess::CrashExit);
        waitUntil("every process to end", [this] { return leftProcesses().isEmpty(); });
        waitUntil("the profile to be removed", [this] { return leftFiles().isEmpty(); });
    }

    QProcess m_probe;
};

TEST_F(KilledOwnerTest, leavesNothingWhenKilledWhileAPageLoads)
{
    site.on("/", page("<img src='/endless'>"));
    site.on("/endless", neverAnswer());
    start("/");
    waitUntil("the browser to fetch", [this] {
        const auto requests = site.requests();
        return std::any_of(requests.begin(), requests.end(), [](const QByteArray &request) {
            return request.startsWith("GET /endless");
        });
    });
    EXPECT_FALSE(leftFiles().isEmpty());
    killAndWait();
}

TEST_F(KilledOwnerTest, leavesNothingWhenKilledWhileTheBrowserStarts)
{
    // Ten times, because the moment differs: between the folder and the guardian there is none in
    // which both are missing, and that is what a failure here would show.
    constexpr int kRepeats = 10;
    site.on("/", neverAnswer());
    for (int i = 0; i < kRepeats; ++i) {
        start("/missing");
        waitUntil("the browser to start", [this] { return leftProcesses().size() > i_guardian; });
        killAndWait();
    }
}

TEST_F(KilledOwnerTest, leavesNothingOfABrowserThatHangs)
{
    useBrowserScript("trap '' TERM INT HUP\ntouch \"$HOME/up\"\n(setsid sleep 1000 &)\n"
                     "while :; do sleep 1; done");
    start("/missing");
    waitUntil("the browser to start", [this] { return leftProcesses().size() >= 4; });
    killAndWait();
}

} // namespace
} // namespace tollivar::capture
