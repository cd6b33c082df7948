#include "tests/companions/capture/capture_fixture.h"

#include <gmock/gmock.h>

#include <thread>

namespace tollivar::capture {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using test::answer;
using test::answerStatus;
using test::HttpPeer;
using test::medium;
using test::neverAnswer;
using test::page;
using test::redirectTo;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using Clock = std::chrono::steady_clock;

class CaptureEngineTest : public test::CaptureFixture {
protected:
    [[nodiscard]] static seconds since(Clock::time_point start)
    {
        return std::chrono::duration_cast<seconds>(Clock::now() - start);
    }

    /// The only medium of the page, or none with a failed test.
    [[nodiscard]] MediaFound onlyMediumOf(const QByteArray &path)
    {
        const auto media = mediaOf(path);
        EXPECT_THAT(media, SizeIs(1));
        return media.empty() ? MediaFound{} : media.front();
    }
};

TEST_F(CaptureEngineTest, findsTheClipOfAVideoElement)
{
    site.on("/", page("<title>A harbour</title><video src='clip.mp4'></video>"));
    site.on("/clip.mp4", medium(123'456));
    const auto found = onlyMediumOf("/");
    EXPECT_EQ(found.address, site.address("/clip.mp4"));
    EXPECT_EQ(found.title, u"A harbour");
    EXPECT_EQ(found.mediaType, u"video/mp4");
    EXPECT_EQ(found.extension, u".mp4");
    EXPECT_EQ(found.length, 123'456);
    EXPECT_EQ(found.referer, site.address("/"));
    EXPECT_TRUE(found.location.isEmpty());
}

TEST_F(CaptureEngineTest, neverSaysThatItHasNoWindow)
{
    site.on("/", page("<video src='clip.mp4'></video>"
                      "<script>new Worker('work.js')</script>"
                      "<iframe src='/frame'></iframe>"));
    site.on("/frame", page("in a frame"));
    site.on("/work.js", answer("fetch('/data')", "text/javascript"));
    site.on("/data", answer("x", "text/plain"));
    site.on("/clip.mp4", medium());
    const auto found = onlyMediumOf("/");
    EXPECT_TRUE(found.agent.contains(u"Chrome/")) << found.agent.toStdString();
    for (const QByteArray &request : site.requests()) {
        EXPECT_FALSE(request.contains("Headless")) << request.constData();
    }
}

TEST_F(CaptureEngineTest, findsTheSourceThatCanBeHad)
{
    site.on("/", page("<video><source src='gone.webm' type='video/webm'>"
                      "<source src='clip.mp4' type='video/mp4'></video>"));
    site.on("/clip.mp4", medium());
    EXPECT_EQ(onlyMediumOf("/").address, site.address("/clip.mp4"));
}

TEST_F(CaptureEngineTest, startsAPlayerThatWaitsForItsVisitor)
{
    site.on("/", page("<video preload='none' src='clip.mp4'></video>"));
    site.on("/clip.mp4", medium());
    EXPECT_EQ(onlyMediumOf("/").address, site.address("/clip.mp4"));
}

TEST_F(CaptureEngineTest, pressesThePlayButtonOfAPageWithoutAPlayer)
{
    site.on("/", page("<button class='big-play-button'>&#9654;</button><script>"
                      "document.querySelector('button').onclick = () => {"
                      "  const video = document.createElement('video');"
                      "  video.src = 'clip.mp4'; document.body.append(video); };</script>"));
    site.on("/clip.mp4", medium());
    EXPECT_EQ(onlyMediumOf("/").address, site.address("/clip.mp4"));
}

TEST_F(CaptureEngineTest, carriesTheCookiesAndTheRefererThatTheClipNeeds)
{
    site.on("/", page("<script>setTimeout(() => fetch('/clip'), 1000)</script>",
                      "Set-Cookie: pass=sesame; HttpOnly\r\nSet-Cookie: seen=1\r\n"));
    const QByteArray referer = "Referer: " + site.address("/").toUtf8() + "\r\n";
    site.on("/clip", [referer](HttpPeer &peer) {
        const bool isWelcome =
            peer.request().contains("pass=sesame") && peer.request().contains(referer);
        (isWelcome ? medium() : answerStatus("403 Forbidden"))(peer);
    });
    const auto found = onlyMediumOf("/");
    EXPECT_EQ(found.address, site.address("/clip"));
    EXPECT_EQ(found.cookies, u"pass=sesame; seen=1");
    EXPECT_EQ(found.referer, site.address("/"));
}

TEST_F(CaptureEngineTest, looksIntoFramesOfOtherHosts)
{
    const QString other = QStringLiteral("http://localhost:%1/frame").arg(site.port());
    site.on("/", page("<title>Outside</title><iframe src='" + other.toUtf8() + "'></iframe>"));
    site.on("/frame", page("<title>Inside</title><video preload='none' src='clip.mp4'></video>"));
    site.on("/clip.mp4", medium());
    const auto found = onlyMediumOf("/");
    EXPECT_EQ(found.address, QStringLiteral("http://localhost:%1/clip.mp4").arg(site.port()));
    EXPECT_EQ(found.referer, other);
    EXPECT_EQ(found.title, u"Outside");
}

TEST_F(CaptureEngineTest, looksIntoFramesWithinFrames)
{
    site.on("/", page("<iframe src='/outer'></iframe>"));
    site.on("/outer", page("<iframe src='/inner'></iframe>"));
    site.on("/inner", page("<video preload='none' src='clip.mp4'></video>"));
    site.on("/clip.mp4", medium());
    EXPECT_EQ(onlyMediumOf("/").address, site.address("/clip.mp4"));
}

TEST_F(CaptureEngineTest, looksIntoShadowTrees)
{
    site.on("/", page("<div></div><script>"
                      "document.querySelector('div').attachShadow({mode: 'open'})"
                      ".innerHTML = \"<video preload='none' src='clip.mp4'></video>\";</script>"));
    site.on("/clip.mp4", medium());
    EXPECT_EQ(onlyMediumOf("/").address, site.address("/clip.mp4"));
}

TEST_F(CaptureEngineTest, seesWhatAWorkerFetches)
{
    site.on("/", page("<script>new Worker('work.js')</script>", "Set-Cookie: a=1\r\n"));
    site.on("/work.js", answer("fetch('/clip')", "text/javascript"));
    site.on("/clip", medium());
    const auto found = onlyMediumOf("/");
    EXPECT_EQ(found.address, site.address("/clip"));
    EXPECT_EQ(found.cookies, u"a=1");
}

TEST_F(CaptureEngineTest, picksTheClipAmongDecoys)
{
    site.on("/", page("<img src='pixel.gif' width=1 height=1>"
                      "<audio src='click.mp3' autoplay></audio>"
                      "<video src='preview.mp4' width=80 height=45></video>"
                      "<video src='film.mp4' poster='poster.png' width=640 height=360></video>"));
    site.on("/pixel.gif", answer("GIF89a", "image/gif"));
    site.on("/poster.png", answer("PNG", "image/png"));
    site.on("/click.mp3", medium(2'000, "audio/mpeg"));
    site.on("/preview.mp4", medium(900'000));
    site.on("/film.mp4", medium(400'000));
    const auto media = mediaOf("/");
    ASSERT_THAT(media, SizeIs(3));
    EXPECT_EQ(media[0].address, site.address("/film.mp4"));
    EXPECT_EQ(media[1].address, site.address("/preview.mp4"));
    EXPECT_EQ(media[2].address, site.address("/click.mp3"));
}

TEST_F(CaptureEngineTest, followsAPageThatMoved)
{
    site.on("/", redirectTo(site.address("/new")));
    site.on("/new", page("<title>Moved</title><video src='clip.mp4'></video>"));
    site.on("/clip.mp4", medium());
    const auto found = onlyMediumOf("/");
    EXPECT_EQ(found.title, u"Moved");
    EXPECT_EQ(found.referer, site.address("/new"));
}

TEST_F(CaptureEngineTest, tellsWhereARedirectedClipLay)
{
    site.on("/", page("<video src='go'></video>"));
    site.on("/go", redirectTo(site.address("/clip.mp4")));
    site.on("/clip.mp4", medium());
    const auto found = onlyMediumOf("/");
    EXPECT_EQ(found.address, site.address("/clip.mp4"));
    EXPECT_EQ(found.location, site.address("/clip.mp4"));
}

TEST_F(CaptureEngineTest, goesAlongWithAPageThatSendsItsVisitorOn)
{
    site.on("/", page("<script>setTimeout(() => location = '/next', 500)</script>"));
    site.on("/next", page("<title>Next</title><video src='clip.mp4'></video>"));
    site.on("/clip.mp4", medium());
    EXPECT_EQ(onlyMediumOf("/").title, u"Next");
}

TEST_F(CaptureEngineTest, offersALinkWithTheCookiesThatItWouldNeed)
{
    site.on("/", page("<a href='clip.avi'>take it</a><a href='/other'>not this</a>",
                      "Set-Cookie: pass=sesame; HttpOnly\r\n"));
    const auto found = onlyMediumOf("/");
    EXPECT_EQ(found.address, site.address("/clip.avi"));
    EXPECT_EQ(found.extension, u".avi");
    EXPECT_EQ(found.cookies, u"pass=sesame");
    EXPECT_EQ(found.referer, site.address("/"));
    EXPECT_TRUE(found.agent.contains(u"Chrome/"));
}

TEST_F(CaptureEngineTest, aLinkDoesNotHideTheClipThatAScriptFetchesLater)
{
    site.on("/", page("<a href='other.mp4'>another one</a>"
                      "<script>setTimeout(() => fetch('/clip'), 1000)</script>"));
    site.on("/clip", medium());
    const auto media = mediaOf("/");
    ASSERT_THAT(media, SizeIs(2));
    EXPECT_EQ(media[0].address, site.address("/clip"));
    EXPECT_EQ(media[1].address, site.address("/other.mp4"));
}

TEST_F(CaptureEngineTest, offersFlashFilmsFirstWhenTheyArePreferred)
{
    site.on("/", page("<embed src='game.swf' type='application/x-shockwave-flash'>"
                      "<video src='clip.mp4'></video>"));
    site.on("/clip.mp4", medium());
    site.on("/game.swf", medium(5'000, "application/x-shockwave-flash"));
    const auto media = mediaOf("/", MediaPreference::Flash);
    ASSERT_THAT(media, SizeIs(2));
    EXPECT_EQ(media[0].address, site.address("/game.swf"));
    EXPECT_EQ(media[0].extension, u".swf");
}

TEST_F(CaptureEngineTest, takesAPageThatIsADownload)
{
    site.on("/film", medium(300'000, "video/x-flv"));
    const auto found = onlyMediumOf("/film");
    EXPECT_EQ(found.address, site.address("/film"));
    EXPECT_EQ(found.extension, u".flv");
}

TEST_F(CaptureEngineTest, findsNothingOnAPageOfText)
{
    site.on("/", page("<title>Words</title><p>only words</p>"));
    const auto start = Clock::now();
    EXPECT_THAT(mediaOf("/"), IsEmpty());
    EXPECT_LE(since(start), seconds(10));
}

TEST_F(CaptureEngineTest, givesUpAPageThatNeverFinishesLoadingAndHasNoMedia)
{
    site.on("/", page("<img src='/endless'>"));
    site.on("/endless", neverAnswer());
    const auto start = Clock::now();
    EXPECT_THAT(mediaOf("/"), IsEmpty());
    EXPECT_LE(since(start), seconds(12));
}

TEST_F(CaptureEngineTest, findsTheClipOfAPageThatNeverFinishesLoading)
{
    site.on("/", page("<title>Endless</title><video src='clip.mp4'></video><img src='/endless'>"));
    site.on("/endless", neverAnswer());
    site.on("/clip.mp4", medium());
    const auto found = onlyMediumOf("/");
    EXPECT_EQ(found.address, site.address("/clip.mp4"));
    EXPECT_EQ(found.title, u"Endless");
}

TEST_F(CaptureEngineTest, findsNothingOnAPageThatIsNotThere)
{
    const QByteArray body = "<video src='clip.mp4'></video>";
    site.on("/missing", [body](HttpPeer &peer) {
        peer.send("HTTP/1.1 404 Not Found\r\nContent-Type: text/html\r\nContent-Length: " +
                  QByteArray::number(body.size()) + "\r\n\r\n" + body);
    });
    site.on("/clip.mp4", medium());
    EXPECT_THAT(mediaOf("/missing"), IsEmpty());
}

TEST_F(CaptureEngineTest, aSiteThatCannotBeReachedIsAFailure)
{
    QString address;
    {
        const test::HttpSite gone;
        address = gone.address("/");
    }
    const auto start = Clock::now();
    const auto found = find(address);
    ASSERT_FALSE(found);
    EXPECT_EQ(found.error().kind, platform::ErrorKind::TryAgain);
    EXPECT_LE(since(start), seconds(10));
}

TEST_F(CaptureEngineTest, answersDialogsSoThatThePageGoesOn)
{
    site.on("/", page("<script>alert('Hello'); if (confirm('Old enough?'))"
                      " document.write(\"<video src='clip.mp4'></video>\")</script>"));
    site.on("/clip.mp4", medium());
    EXPECT_EQ(onlyMediumOf("/").address, site.address("/clip.mp4"));
}

TEST_F(CaptureEngineTest, leavesWindowsThatThePageOpensAside)
{
    site.on("/",
            page("<button id='play'>play</button><script>"
                 "document.querySelector('button').onclick = () => { window.open('/ad');"
                 " document.body.innerHTML = \"<video src='clip.mp4'></video>\"; };</script>"));
    site.on("/ad", page("<video src='ad.mp4'></video>"));
    site.on("/ad.mp4", medium(900'000));
    site.on("/clip.mp4", medium());
    const auto media = mediaOf("/");
    ASSERT_FALSE(media.empty());
    EXPECT_EQ(media[0].address, site.address("/clip.mp4"));
}

TEST_F(CaptureEngineTest, aPageThatComputesForEverStillYieldsItsClip)
{
    site.on("/",
            page("<title>Busy</title><script>fetch('/clip').then(() => { for (;;); })</script>"));
    site.on("/clip", medium());
    EXPECT_EQ(onlyMediumOf("/").address, site.address("/clip"));
}

TEST_F(CaptureEngineTest, aPageCannotLieToTheScript)
{
    site.on("/", page("<title>True</title><script>"
                      "JSON.stringify = () => '{\"title\":\"False\"}';"
                      "globalThis.tollivarReport = () => { throw 1; };"
                      "HTMLMediaElement.prototype.play = () => { throw 1; };"
                      "document.querySelectorAll = () => [];"
                      "</script><video preload='none' src='clip.mp4'></video>"));
    site.on("/clip.mp4", medium());
    const auto found = onlyMediumOf("/");
    EXPECT_EQ(found.address, site.address("/clip.mp4"));
    EXPECT_EQ(found.title, u"True");
}

TEST_F(CaptureEngineTest, isStoppedAtOnceWhileAPageLoads)
{
    site.on("/", neverAnswer());
    std::thread stopper([this] {
        site.waitForRequests(1);
        stop.set();
    });
    const auto found = find(site.address("/"));
    const auto start = Clock::now();
    stopper.join();
    ASSERT_FALSE(found);
    EXPECT_EQ(found.error().text, u"stopped");
    EXPECT_TRUE(stop.isSet());
    EXPECT_LE(since(start), seconds(5));
}

TEST_F(CaptureEngineTest, endsAtTheDeadline)
{
    site.on("/", neverAnswer());
    const auto start = Clock::now();
    EXPECT_FALSE(find(site.address("/"), milliseconds(1'500)));
    EXPECT_LE(since(start), seconds(10));
}

TEST_F(CaptureEngineTest, opensNothingButPagesOfTheWeb)
{
    for (const QString &address :
         {QStringLiteral("file:///etc/passwd"), QStringLiteral("chrome://version"),
          QStringLiteral("javascript:alert(1)"), QStringLiteral("view-source:http://h/"),
          QStringLiteral("data:text/html,x"), QStringLiteral("--help"), QString()}) {
        const auto found = find(address);
        ASSERT_FALSE(found) << address.toStdString();
        EXPECT_EQ(found.error().kind, platform::ErrorKind::AskUser);
    }
}

} // namespace
} // namespace tollivar::capture
