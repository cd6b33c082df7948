#include "companions/pageprobe/direct_finder.h"
#include "companions/pageprobe/static_finder.h"
#include "tests/support/http_site.h"
#include "tests/support/sample_site.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tollivar::capture::FindRequest;
using tollivar::capture::MediaFinder;
using tollivar::capture::MediaFound;
using tollivar::capture::MediaPreference;
using tollivar::platform::AutoResetEvent;
using tollivar::probe::DirectFinder;
using tollivar::probe::StaticFinder;
using tollivar::test::answer;
using tollivar::test::answerStatus;
using tollivar::test::HttpPeer;
using tollivar::test::HttpSite;
using tollivar::test::neverAnswer;
using tollivar::test::SampleSite;

FindRequest requestFor(const QString &address)
{
    return {.address = address,
            .preference = MediaPreference::Video,
            .deadline = std::chrono::steady_clock::now() + 1min};
}

template<typename Finder>
std::vector<MediaFound> find(const QString &address)
{
    AutoResetEvent stop;
    auto media = Finder().find(requestFor(address), stop);
    EXPECT_TRUE(media) << qPrintable(media.error().text);
    return media ? *media : std::vector<MediaFound>();
}

/// Sets the stop event while `finder` waits for a server that never answers.
void expectToStopAtOnce(MediaFinder &finder)
{
    HttpSite site;
    site.on("/x", neverAnswer());
    AutoResetEvent stop;
    std::thread stopper([&] {
        site.waitForRequests(1);
        stop.set();
    });
    const auto begin = std::chrono::steady_clock::now();
    static_cast<void>(finder.find(requestFor(site.address("/x")), stop));
    // Unstopped, a finder gives up after four seconds at the earliest.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 3s);
    EXPECT_TRUE(stop.isSet());
    stopper.join();
}

TEST(DirectFinder, takesAMediumForItself)
{
    const SampleSite site;
    const auto media = find<DirectFinder>(site.address(u"media/clip.mp4"_s));
    ASSERT_EQ(media.size(), 1U);
    EXPECT_EQ(media[0].address, site.address(u"media/clip.mp4"_s));
    EXPECT_EQ(media[0].title, u"clip");
    EXPECT_EQ(media[0].mediaType, u"video/mp4");
    EXPECT_EQ(media[0].extension, u".mp4");
    EXPECT_GT(media[0].length.value_or(0), 100'000);
    EXPECT_EQ(media[0].location, QString());
    EXPECT_FALSE(media[0].agent.isEmpty());
}

TEST(DirectFinder, asksForOneByteWhereTheServerKnowsNoHead)
{
    const SampleSite site;
    const auto direct = find<DirectFinder>(site.address(u"media/clip.webm"_s));
    const auto media = find<DirectFinder>(site.address(u"no-head/clip.webm"_s));
    ASSERT_EQ(media.size(), 1U);
    ASSERT_EQ(direct.size(), 1U);
    EXPECT_EQ(media[0].extension, u".webm");
    EXPECT_EQ(media[0].length, direct[0].length);
}

TEST(DirectFinder, takesNoPageAndNothingThatIsNotThere)
{
    const SampleSite site;
    for (const QString &path : {u"video.html"_s, u"missing.html"_s, u"media/poster.png"_s,
                                u"media/missing.mp4"_s, u"style.css"_s, u"protected/clip.mp4"_s}) {
        EXPECT_TRUE(find<DirectFinder>(site.address(path)).empty()) << qPrintable(path);
    }
}

TEST(DirectFinder, takesNoPlaylistForTheFilm)
{
    HttpSite site;
    site.on("/live.m3u8", answer("#EXTM3U", "text/plain"));
    site.on("/manifest", answer("<MPD/>", "application/dash+xml"));
    EXPECT_TRUE(find<DirectFinder>(site.address("/live.m3u8")).empty());
    EXPECT_TRUE(find<DirectFinder>(site.address("/manifest")).empty());
}

TEST(DirectFinder, goesByTheEndingWhereTheTypeSaysNothing)
{
    HttpSite site;
    site.on("/clip.mp4", answer("x", "application/octet-stream"));
    site.on("/data", answer("x", "application/octet-stream"));
    EXPECT_EQ(find<DirectFinder>(site.address("/clip.mp4")).size(), 1U);
    EXPECT_TRUE(find<DirectFinder>(site.address("/data")).empty());
}

TEST(DirectFinder, namesNoEndingThatIsNoMediums)
{
    HttpSite site;
    site.on("/play.php", answer("x", "video/x-nobody-knows"));
    const auto media = find<DirectFinder>(site.address("/play.php"));
    ASSERT_EQ(media.size(), 1U);
    EXPECT_EQ(media[0].extension, QString());
}

TEST(DirectFinder, tellsWhereARedirectLed)
{
    HttpSite site;
    site.on("/old", answerStatus("302 Found", "Location: /new.webm\r\n"));
    site.on("/new.webm", answer("x", "video/webm"));
    const auto media = find<DirectFinder>(site.address("/old"));
    ASSERT_EQ(media.size(), 1U);
    EXPECT_EQ(media[0].address, site.address("/old"));
    EXPECT_EQ(media[0].location, site.address("/new.webm"));
    EXPECT_EQ(media[0].title, u"new");
}

TEST(DirectFinder, findsNothingWhereNobodyListens)
{
    quint16 port = 0;
    {
        const HttpSite closed;
        port = closed.port();
    }
    EXPECT_TRUE(find<DirectFinder>(u"http://127.0.0.1:%1/x.mp4"_s.arg(port)).empty());
}

TEST(DirectFinder, givesWayToAStop)
{
    DirectFinder finder;
    expectToStopAtOnce(finder);
}

TEST(StaticFinder, readsThePageAndSaysHowToAskForItsMedia)
{
    const SampleSite site;
    const auto media = find<StaticFinder>(site.address(u"video.html"_s));
    ASSERT_EQ(media.size(), 1U);
    EXPECT_EQ(media[0].address, site.address(u"media/clip.mp4"_s));
    EXPECT_EQ(media[0].title, u"Harbour at dawn");
    EXPECT_EQ(media[0].referer, site.address(u"video.html"_s));
    EXPECT_FALSE(media[0].agent.isEmpty());
}

TEST(StaticFinder, takesAMovedPagesAddressesFromItsNewPlace)
{
    HttpSite site;
    site.on("/old", answerStatus("302 Found", "Location: /folder/new.html\r\n"));
    site.on("/folder/new.html", answer("<video src=clip.mp4>", "text/html"));
    const auto media = find<StaticFinder>(site.address("/old"));
    ASSERT_EQ(media.size(), 1U);
    EXPECT_EQ(media[0].address, site.address("/folder/clip.mp4"));
    EXPECT_EQ(media[0].referer, site.address("/folder/new.html"));
}

TEST(StaticFinder, readsNoFileAndNoErrorPage)
{
    HttpSite site;
    site.on("/zip", answer("<video src=clip.mp4>", "application/zip"));
    site.on("/gone", [](HttpPeer &peer) {
        peer.send("HTTP/1.1 410 Gone\r\nContent-Type: text/html\r\nContent-Length: 20\r\n\r\n"
                  "<video src=clip.mp4>");
    });
    EXPECT_TRUE(find<StaticFinder>(site.address("/zip")).empty());
    EXPECT_TRUE(find<StaticFinder>(site.address("/gone")).empty());
}

TEST(StaticFinder, readsWhatCameOfABrokenPage)
{
    HttpSite site;
    site.on("/cut", [](HttpPeer &peer) {
        peer.send("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 9000\r\n\r\n"
                  "<title>Half</title><video src=clip.mp4>");
    });
    EXPECT_EQ(find<StaticFinder>(site.address("/cut")).size(), 1U);
}

TEST(StaticFinder, readsAnEndlessPageUpToALimit)
{
    HttpSite site;
    site.on("/endless", [](HttpPeer &peer) {
        peer.send("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n\r\n<video src=clip.mp4>");
        while (peer.send(QByteArray(64 * 1024, ' '))) {
        }
    });
    EXPECT_EQ(find<StaticFinder>(site.address("/endless")).size(), 1U);
}

TEST(StaticFinder, givesWayToAStop)
{
    StaticFinder finder;
    expectToStopAtOnce(finder);
}

} // namespace
