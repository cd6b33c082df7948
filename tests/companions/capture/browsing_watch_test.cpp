#include "companions/capture/browser_start.h"
#include "companions/capture/browsing_watch.h"
#include "tests/companions/capture/capture_fixture.h"

#include <gmock/gmock.h>

namespace tollivar::capture {
namespace {

using test::medium;
using test::page;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A person's browser, but without its window.
class BrowsingWatchTest : public test::CaptureFixture {
protected:
    void browse(const QByteArray &path)
    {
        auto browser = startBrowser(BrowserFace::Hidden);
        ASSERT_TRUE(browser) << browser.error().text.toStdString();
        m_browser = std::move(*browser);
        m_watch = std::make_unique<BrowsingWatch>(*m_browser, site.address(path));
    }

    /// Looks on until `isThere`, at most as long as the slowest machine needs.
    template<typename Condition>
    void watchUntil(const char *what, Condition isThere)
    {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!isThere()) {
            ASSERT_LT(std::chrono::steady_clock::now(), limit) << what;
            ASSERT_TRUE(m_watch->step()) << what << ": the browser is gone";
        }
    }

    std::vector<QString> addresses() const
    {
        std::vector<QString> found;
        for (const MediaFound &each : m_watch->media()) {
            found.push_back(each.address);
        }
        return found;
    }

    std::unique_ptr<platform::GuardedChild> m_browser;
    std::unique_ptr<BrowsingWatch> m_watch;

    void TearDown() override
    {
        m_watch.reset();
        m_browser.reset();
        CaptureFixture::TearDown();
    }
};

TEST_F(BrowsingWatchTest, seesWhatAPagePlaysWithEverythingAServerHasToBeTold)
{
    site.on("/", page("<title>A harbour</title><video autoplay muted src='clip.mp4'></video>",
                      "Set-Cookie: key=secret; HttpOnly\r\n"));
    site.on("/clip.mp4", medium(123'456));
    browse("/");
    watchUntil("the clip", [this] {
        const auto media = m_watch->media();
        return !media.empty() && !media[0].title.isEmpty() && !media[0].cookies.isEmpty();
    });
    const MediaFound found = m_watch->media().front();
    EXPECT_EQ(found.address, site.address("/clip.mp4"));
    EXPECT_EQ(found.title, u"A harbour");
    EXPECT_EQ(found.page, site.address("/"));
    EXPECT_EQ(found.referer, site.address("/"));
    EXPECT_EQ(found.cookies, u"key=secret");
    EXPECT_EQ(found.length, 123'456);
    EXPECT_FALSE(found.agent.isEmpty());
    EXPECT_TRUE(m_watch->takeNews());
    EXPECT_FALSE(m_watch->takeNews());
}

TEST_F(BrowsingWatchTest, startsNothingThatThePersonDidNotStart)
{
    site.on("/", page("<title>Still</title><video preload='none' src='clip.mp4'></video>"
                      "<script>setTimeout(() => fetch('/later'), 1500)</script>"));
    site.on("/later", test::answer("x", "text/plain"));
    site.on("/clip.mp4", medium());
    browse("/");
    watchUntil("the page's own clock", [this] {
        const auto requests = site.requests();
        return std::any_of(requests.begin(), requests.end(), [](const QByteArray &request) {
            return request.startsWith("GET /later ");
        });
    });
    EXPECT_THAT(addresses(), IsEmpty());
}

TEST_F(BrowsingWatchTest, keepsWhatEarlierPagesPlayedBehindWhatIsPlayedNow)
{
    site.on("/", page("<video autoplay muted src='one.mp4'></video>"
                      "<script>document.querySelector('video').addEventListener('error', () => "
                      "setTimeout(() => location = '/second', 300))</script>"));
    site.on("/second", page("<video autoplay muted src='two.mp4'></video>"
                            "<audio autoplay muted src='one.mp4'></audio>"));
    site.on("/one.mp4", medium(300'000));
    site.on("/two.mp4", medium(900'000));
    browse("/");
    const auto both = ElementsAre(site.address("/two.mp4"), site.address("/one.mp4"));
    watchUntil("both clips", [&] { return testing::Value(addresses(), both); });
}

TEST_F(BrowsingWatchTest, looksIntoFrames)
{
    site.on("/", page("<iframe src='/frame'></iframe>"));
    site.on("/frame", page("<video autoplay muted src='framed.mp4'></video>"));
    site.on("/framed.mp4", medium());
    browse("/");
    watchUntil("the framed clip", [&] {
        return testing::Value(addresses(), testing::Contains(site.address("/framed.mp4")));
    });
}

} // namespace
} // namespace tollivar::capture
