#include "fetch/http/http_client.h"
#include "tests/support/http_site.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>

namespace tollivar::fetch {
namespace {

using platform::AutoResetEvent;
using test::HttpSite;

/// Longer than any stop may take, shorter than any server's silence here.
constexpr std::chrono::seconds kPromptly{10};

QByteArray readAll(HttpClient &client, ReadEnd &end)
{
    QByteArray body;
    std::array<std::byte, 8192> buffer;
    for (;;) {
        const ReadResult read = client.read(buffer);
        if (read.bytes == 0) {
            end = read.end;
            return body;
        }
        body.append(reinterpret_cast<const char *>(buffer.data()),
                    static_cast<qsizetype>(read.bytes));
    }
}

/// Sets the event once the site has seen a request, and tells how long `work` took after that.
template<typename Work>
std::chrono::steady_clock::duration timeToStop(HttpSite &site, AutoResetEvent &stop, Work work)
{
    std::chrono::steady_clock::time_point asked;
    std::thread stopper([&] {
        site.waitForRequests(1);
        asked = std::chrono::steady_clock::now();
        stop.set();
    });
    work();
    const auto ended = std::chrono::steady_clock::now();
    stopper.join();
    return ended - asked;
}

TEST(HttpClient, readsABodyInPiecesToItsEnd)
{
    HttpSite site;
    const QByteArray body(3'000'000, 'x');
    site.on("/clip", test::answer(body));
    AutoResetEvent stop;

    const auto client = HttpClient::open({.address = site.address("/clip")}, stop);

    ASSERT_TRUE(client);
    EXPECT_EQ((*client)->statusCode(), 200);
    EXPECT_EQ((*client)->header("content-length"), QByteArray("3000000"));
    EXPECT_EQ((*client)->header("no-such"), std::nullopt);
    ReadEnd end = ReadEnd::Data;
    EXPECT_EQ(readAll(**client, end), body);
    EXPECT_EQ(end, ReadEnd::Body);
}

TEST(HttpClient, sendsTheHeaderBlockAsItStandsAndNothingOfItsOwn)
{
    HttpSite site;
    site.on("/a", test::answer("x"));
    AutoResetEvent stop;

    ASSERT_TRUE(HttpClient::open({.address = site.address("/a"),
                                  .headers = "Accept: */*\r\nReferer: http://r/\r\nCookie: a=b\r\n"
                                             "User-Agent:Mozilla/4.0\r\n\r\n"},
                                 stop));

    const QByteArray host = "Host: 127.0.0.1:" + QByteArray::number(site.port()) + "\r\n";
    EXPECT_EQ(site.requests().front(),
              "GET /a HTTP/1.1\r\n" + host +
                  "Accept: */*\r\nReferer: http://r/\r\nCookie: a=b\r\nUser-Agent:Mozilla/4.0\r\n"
                  "Cache-Control: no-cache\r\n\r\n");
}

TEST(HttpClient, aHeaderThatWouldAddAnotherIsRefused)
{
    AutoResetEvent stop;
    EXPECT_FALSE(HttpClient::open({.address = QStringLiteral("http://127.0.0.1:1/"),
                                   .headers = "Cookie: a\rX-Injected: b\r\n"},
                                  stop));
}

TEST(HttpClient, aBlankInAnAddressIsEncoded)
{
    HttpSite site;
    site.on("/my%20clip.mp4", test::answer("x"));
    AutoResetEvent stop;

    const auto client = HttpClient::open({.address = site.address("/my clip.mp4")}, stop);

    ASSERT_TRUE(client);
    EXPECT_EQ((*client)->statusCode(), 200);
}

TEST(HttpClient, followsRedirectsAndTellsWhereTheyLed)
{
    HttpSite site;
    site.on("/old", test::answerStatus("302 Found", "Location: /new\r\n"));
    site.on("/new", test::answer("moved"));
    AutoResetEvent stop;

    const auto client = HttpClient::open({.address = site.address("/old")}, stop);

    ASSERT_TRUE(client);
    EXPECT_EQ((*client)->statusCode(), 200);
    EXPECT_EQ((*client)->finalAddress(), site.address("/new"));
}

TEST(HttpClient, fetchesNothingButHttpAlsoAfterARedirect)
{
    HttpSite site;
    site.on("/file", test::answerStatus("302 Found", "Location: file:///etc/passwd\r\n"));
    site.on("/ftp", test::answerStatus("302 Found", "Location: ftp://127.0.0.1/x\r\n"));
    AutoResetEvent stop;

    EXPECT_FALSE(HttpClient::open({.address = site.address("/file")}, stop));
    EXPECT_FALSE(HttpClient::open({.address = site.address("/ftp")}, stop));
    EXPECT_FALSE(HttpClient::open({.address = QStringLiteral("file:///etc/passwd")}, stop));
    EXPECT_FALSE(HttpClient::open({.address = QStringLiteral("-o/tmp/x")}, stop));
}

TEST(HttpClient, anEndlessRedirectIsGivenUp)
{
    HttpSite site;
    site.on("/round", test::answerStatus("302 Found", "Location: /round\r\n"));
    AutoResetEvent stop;

    EXPECT_FALSE(HttpClient::open({.address = site.address("/round")}, stop));
}

TEST(HttpClient, aBodyThatFallsShortEndsBroken)
{
    HttpSite site;
    site.on("/cut", test::answerCut("half", 8));
    AutoResetEvent stop;

    const auto client = HttpClient::open({.address = site.address("/cut")}, stop);

    ASSERT_TRUE(client);
    ReadEnd end = ReadEnd::Data;
    EXPECT_EQ(readAll(**client, end), QByteArray("half"));
    EXPECT_EQ(end, ReadEnd::Broken);
}

TEST(HttpClient, aHostThatDoesNotListenIsANetworkFailure)
{
    quint16 port = 0;
    {
        const HttpSite gone;
        port = gone.port();
    }
    AutoResetEvent stop;
    const auto client =
        HttpClient::open({.address = QStringLiteral("http://127.0.0.1:%1/").arg(port)}, stop);

    ASSERT_FALSE(client);
    EXPECT_EQ(client.error().kind, platform::ErrorKind::TryAgain);
}

TEST(HttpClient, aHeadRequestGetsTheHeadersAlone)
{
    HttpSite site;
    site.on("/h", [](test::HttpPeer &peer) {
        peer.send("HTTP/1.1 200 OK\r\nContent-Type: video/mp4\r\nContent-Length: 12345\r\n\r\n");
    });
    AutoResetEvent stop;

    const auto client = HttpClient::open({.address = site.address("/h"), .headOnly = true}, stop);

    ASSERT_TRUE(client);
    EXPECT_TRUE(site.requests().front().startsWith("HEAD /h "));
    EXPECT_EQ((*client)->header("Content-Type"), QByteArray("video/mp4"));
}

TEST(HttpClient, aLimitEndsASilentExchange)
{
    HttpSite site;
    site.on("/silent", test::neverAnswer());
    AutoResetEvent stop;

    EXPECT_FALSE(HttpClient::open(
        {.address = site.address("/silent"), .limit = std::chrono::milliseconds(100)}, stop));
}

TEST(HttpClient, aStopEndsTheWaitForAnAnswerAndStaysSet)
{
    HttpSite site;
    site.on("/silent", test::neverAnswer());
    AutoResetEvent stop;

    const auto took = timeToStop(site, stop, [&] {
        EXPECT_FALSE(HttpClient::open({.address = site.address("/silent")}, stop));
    });

    EXPECT_LT(took, kPromptly);
    EXPECT_TRUE(stop.poll());
}

TEST(HttpClient, aStopEndsAReadFromAStalledServer)
{
    HttpSite site;
    site.on("/stall", test::answerStalled("begin", 1000));
    AutoResetEvent stop;

    const auto took = timeToStop(site, stop, [&] {
        const auto client = HttpClient::open({.address = site.address("/stall")}, stop);
        // The stop may come before the headers.
        if (client) {
            ReadEnd end = ReadEnd::Data;
            static_cast<void>(readAll(**client, end));
            EXPECT_EQ(end, ReadEnd::Stopped);
        }
    });

    EXPECT_LT(took, kPromptly);
    EXPECT_TRUE(stop.isSet());
}

TEST(HttpClient, aStopBeforeTheBeginningOpensNothing)
{
    HttpSite site;
    AutoResetEvent stop;
    stop.set();

    EXPECT_FALSE(HttpClient::open({.address = site.address("/")}, stop));
    EXPECT_TRUE(stop.isSet());
}

} // namespace
} // namespace tollivar::fetch
