#include "app/window/update_download.h"
#include "tests/support/http_site.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"
#include "update/update_checker.h"
#include "update/update_info.h"

#include <QFile>

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;
using update::CheckKind;
using update::GetResult;

/// The checker with the real download and a server that the test scripts.
class UpdateCheck : public ::testing::Test {
protected:
    /// Failed checks are tried again without a pause.
    static constexpr update::RetryPauses kAtOnce{};
    /// So long that only the end of its thread ends the checker.
    static constexpr std::chrono::hours kForEver{1};

    std::unique_ptr<update::UpdateChecker> makeChecker(const QByteArray &path = "/check")
    {
        return std::make_unique<update::UpdateChecker>(
            update::UpdatePlaces{m_site.address(path), m_sandbox.file(u"update.ini"_s),
                                 m_sandbox.file(u"tmpupdate.ini"_s)},
            u"1.0.0.0"_s, downloadUpdateInfo, m_inbox.port(),
            update::UpdateTimes{kAtOnce, kForEver});
    }

    void answer(const QByteArray &version)
    {
        m_site.on("/check?ver=1.0.0.0",
                  test::answer("[Version]\r\nMain=" + version + "\r\nWhatsNew=x\r\n"));
    }

    /// The result of one more check.
    std::uint64_t check(update::UpdateChecker &checker, CheckKind kind = CheckKind::Explicit)
    {
        const std::size_t before = m_results.size();
        checker.check(kind);
        test::waitUntil("a result", [&] { return m_results.size() > before; });
        return m_results.empty() ? 0 : m_results.back();
    }

    test::Sandbox m_sandbox;
    test::HttpSite m_site;
    std::vector<std::uint64_t> m_results;
    platform::AppMessageInbox m_inbox{
        [this](const platform::AppMessage &message) { m_results.push_back(message.first); }};
};

TEST_F(UpdateCheck, theVersionThatRunsIsNoNewsAndLeavesTheLocalCopyAlone)
{
    answer("1.0.0.0");
    const auto checker = makeChecker();
    EXPECT_EQ(check(*checker), 13U);
    EXPECT_EQ(update::readUpdateInfo(m_sandbox.file(u"update.ini"_s)).version, u"0.0.0.0"_s);
    EXPECT_GT(update::lastCheckTime(m_sandbox.file(u"update.ini"_s)).date().year(), 2020);
}

TEST_F(UpdateCheck, aNewerVersionIsNewsOnce)
{
    answer("1.0.0.10");
    const auto checker = makeChecker();
    EXPECT_EQ(check(*checker, CheckKind::Automatic), 11U);
    const QString local = m_sandbox.file(u"update.ini"_s);
    EXPECT_EQ(update::readUpdateInfo(local).version, u"1.0.0.10"_s);
    EXPECT_GT(update::lastCheckTime(local).date().year(), 2020);
    EXPECT_EQ(check(*checker), 12U);
    answer("1.0.0.9");
    EXPECT_EQ(check(*checker), 12U);
    EXPECT_EQ(update::readUpdateInfo(local).version, u"1.0.0.10"_s);
}

TEST_F(UpdateCheck, asksWithTheProgramsVersionAndItsOldHeaders)
{
    answer("1.0.0.0");
    EXPECT_EQ(check(*makeChecker()), 13U);
    EXPECT_EQ(update::updateAddress(u"http://a/b"_s, u"1.2.3.4"_s), u"http://a/b?ver=1.2.3.4"_s);
    EXPECT_EQ(update::updateAddress(u"http://a/b?x=1"_s, u"1"_s), u"http://a/b?x=1&ver=1"_s);
    EXPECT_EQ(
        m_site.requests().front(),
        "GET /check?ver=1.0.0.0 HTTP/1.1\r\nHost: 127.0.0.1:" + QByteArray::number(m_site.port()) +
            "\r\nAccept: */*\r\n"
            "User-Agent:Mozilla/4.0 (compatible; MSIE 5.00; Windows 98)\r\n"
            "Cache-Control: no-cache\r\n\r\n");
}

TEST_F(UpdateCheck, anAutomaticOneThatFailsIsTriedFiveTimesMore)
{
    const auto checker = makeChecker();
    m_site.on("/check?ver=1.0.0.0", test::answerCut({}, 10));
    checker->check(CheckKind::Automatic);
    test::waitUntil("the results", [this] { return m_results.size() == 6; });
    EXPECT_EQ(m_results, std::vector<std::uint64_t>(6, 10));
    // Whatever it did of its own accord comes before what it is asked to do.
    EXPECT_EQ(check(*checker), 10U);
    EXPECT_EQ(m_site.requests().size(), 7U);
}

TEST_F(UpdateCheck, anAutomaticOneIsNotTriedAgainOnceItIsAnswered)
{
    const auto checker = makeChecker();
    m_site.on("/check?ver=1.0.0.0", [this](test::HttpPeer &peer) {
        answer("1.0.0.0");
        peer.send("HTTP/1.1 503 Busy\r\nContent-Length: 0\r\n\r\n");
    });
    checker->check(CheckKind::Automatic);
    test::waitUntil("the result", [this] { return !m_results.empty(); });
    EXPECT_EQ(check(*checker), 13U);
    // Another answer than 200 is none, and nothing to tell a person who did not ask.
    EXPECT_EQ(m_results, (std::vector<std::uint64_t>{13, 13}));
    EXPECT_EQ(m_site.requests().size(), 3U);
}

TEST_F(UpdateCheck, anExplicitOneThatFailsIsNotTriedAgain)
{
    const auto checker = makeChecker();
    m_site.on("/check?ver=1.0.0.0", test::answerCut({}, 10));
    EXPECT_EQ(check(*checker), 10U);
    answer("1.0.0.0");
    EXPECT_EQ(check(*checker), 13U);
    EXPECT_EQ(m_site.requests().size(), 2U);
}

TEST_F(UpdateCheck, anotherStatusIsAFailureAndNoAnswer)
{
    const auto checker = makeChecker("/missing");
    EXPECT_EQ(check(*checker), 10U);
    EXPECT_FALSE(QFile::exists(m_sandbox.file(u"tmpupdate.ini"_s)));
}

TEST_F(UpdateCheck, aHugeAnswerIsRefused)
{
    m_site.on("/check?ver=1.0.0.0", test::answer(QByteArray(300 * 1024, 'x')));
    platform::AutoResetEvent stop;
    EXPECT_EQ(
        downloadUpdateInfo(m_site.address("/check?ver=1.0.0.0"), m_sandbox.file(u"x"_s), stop),
        GetResult::Refused);
}

TEST_F(UpdateCheck, aStopCancelsADownloadOfWhichNothingComes)
{
    platform::AutoResetEvent stop;
    m_site.on("/check?ver=1.0.0.0", [&stop](test::HttpPeer &peer) {
        stop.set();
        peer.stall();
    });
    EXPECT_EQ(
        downloadUpdateInfo(m_site.address("/check?ver=1.0.0.0"), m_sandbox.file(u"x"_s), stop),
        GetResult::Cancelled);
}

TEST_F(UpdateCheck, aStopCancelsADownloadThatStallsInTheMiddle)
{
    platform::AutoResetEvent stop;
    m_site.on("/check?ver=1.0.0.0", [&stop](test::HttpPeer &peer) {
        peer.send("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n[Version]\r\n");
        stop.set();
        peer.stall();
    });
    EXPECT_EQ(
        downloadUpdateInfo(m_site.address("/check?ver=1.0.0.0"), m_sandbox.file(u"x"_s), stop),
        GetResult::Cancelled);
}

TEST_F(UpdateCheck, itsEndLeavesAStalledServerAndTellsNothing)
{
    std::atomic<bool> hasLeft = false;
    m_site.on("/check?ver=1.0.0.0", [&hasLeft](test::HttpPeer &peer) {
        peer.stall();
        hasLeft = true;
    });
    auto checker = makeChecker();
    checker->check(CheckKind::Automatic);
    m_site.waitForRequests(1);
    checker.reset();
    // The server is still there, so it was the client that left.
    test::waitUntil("the client's leave", [&hasLeft] { return hasLeft.load(); });
    m_inbox.drain();
    EXPECT_TRUE(m_results.empty());
}

} // namespace
} // namespace tollivar::app
