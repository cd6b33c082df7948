#include "fetch/title_fetch.h"
#include "tests/support/http_site.h"

#include <gtest/gtest.h>

namespace tollivar::fetch {
namespace {

using platform::AutoResetEvent;

TEST(TitleFetch, readsThePageUntilItsTitleIsComplete)
{
    test::HttpSite site;
    site.on("/page", [](test::HttpPeer &peer) {
        peer.send("HTTP/1.1 200 OK\r\n\r\n<head><title>A fine day</title>");
        peer.stall(); // The rest never comes, and is not waited for.
    });
    AutoResetEvent stop;

    const FetchedTitle fetched = fetchTitle(site.address("/page"), stop);

    EXPECT_EQ(fetched.result, StepResult::Done);
    EXPECT_EQ(fetched.title, QStringLiteral("A fine day"));
    EXPECT_TRUE(site.requests().front().contains(
        "Accept: */*\r\nUser-Agent:Mozilla/4.0 (compatible; MSIE 5.00; Windows 98)\r\n"));
}

TEST(TitleFetch, aPageWithoutATitleIsDoneWithoutOne)
{
    test::HttpSite site;
    site.on("/page", test::answer("<body>nothing</body>", "text/html"));
    AutoResetEvent stop;

    const FetchedTitle fetched = fetchTitle(site.address("/page"), stop);

    EXPECT_EQ(fetched.result, StepResult::Done);
    EXPECT_EQ(fetched.title, QString());
}

TEST(TitleFetch, aPageThatIsNotThereFails)
{
    test::HttpSite site;
    AutoResetEvent stop;
    EXPECT_EQ(fetchTitle(site.address("/missing"), stop).result, StepResult::Failed);
    EXPECT_EQ(fetchTitle(QStringLiteral("http://127.0.0.1:1/"), stop).result, StepResult::Failed);
}

TEST(TitleFetch, anEndlessPageIsGivenUp)
{
    test::HttpSite site;
    site.on("/page", [](test::HttpPeer &peer) {
        const QByteArray piece(64 * 1024, 'x');
        for (bool goesOn = peer.send("HTTP/1.1 200 OK\r\n\r\n"); goesOn;) {
            goesOn = peer.send(piece);
        }
    });
    AutoResetEvent stop;

    EXPECT_EQ(fetchTitle(site.address("/page"), stop).result, StepResult::Done);
}

TEST(TitleFetch, aStopIsTakenBackByTheStepThatSeesIt)
{
    test::HttpSite site;
    site.on("/page", test::neverAnswer());
    AutoResetEvent stop;
    FetchedTitle fetched;
    std::thread fetch([&] { fetched = fetchTitle(site.address("/page"), stop); });
    site.waitForRequests(1);
    stop.set();
    fetch.join();

    EXPECT_EQ(fetched.result, StepResult::Stopped);
    EXPECT_FALSE(stop.isSet());
}

} // namespace
} // namespace tollivar::fetch
