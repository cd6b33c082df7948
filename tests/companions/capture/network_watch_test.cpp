#include "companions/capture/network_watch.h"
#include "tests/companions/capture/devtools_events.h"

#include <gmock/gmock.h>

namespace tollivar::capture {
namespace {

using News = NetworkWatch::News;
using test::devToolsEvent;

/// Events of one request, in the words that the browser uses.
class NetworkWatchTest : public ::testing::Test {
protected:
    News request(const QByteArray &id, const QByteArray &address,
                 const QByteArray &headers = R"({"User-Agent":"asked","Referer":"http://p/"})",
                 const QByteArray &more = {}, const QByteArray &method = "GET")
    {
        return m_watch.take(devToolsEvent("Network.requestWillBeSent",
                                          R"({"requestId":")" + id + R"(","request":{"url":")" +
                                              address + R"(","method":")" + method +
                                              R"(","headers":)" + headers + "}" + more + "}"));
    }
    News redirect(const QByteArray &id, const QByteArray &address)
    {
        return request(id, address, "{}", R"(,"redirectResponse":{"status":302})");
    }
    News wire(const QByteArray &id, const QByteArray &headers)
    {
        return m_watch.take(
            devToolsEvent("Network.requestWillBeSentExtraInfo",
                          R"({"requestId":")" + id + R"(","headers":)" + headers + "}", "S2"));
    }
    News respond(const QByteArray &id, const QByteArray &address,
                 const QByteArray &type = "video/mp4",
                 const QByteArray &headers = R"({"Content-Length":"1000"})",
                 const QByteArray &status = "200")
    {
        return m_watch.take(devToolsEvent(
            "Network.responseReceived",
            R"({"requestId":")" + id + R"(","response":{"url":")" + address + R"(","status":)" +
                status + R"(,"mimeType":")" + type + R"(","headers":)" + headers + "}}"));
    }
    News data(const QByteArray &id, const QByteArray &length)
    {
        return m_watch.take(
            devToolsEvent("Network.dataReceived",
                          R"({"requestId":")" + id + R"(","dataLength":)" + length + "}"));
    }
    News end(const QByteArray &id, const QByteArray &how = "Finished")
    {
        return m_watch.take(
            devToolsEvent("Network.loading" + how, R"({"requestId":")" + id + "\"}"));
    }
    [[nodiscard]] WatchedRequest only() const
    {
        const auto candidates = m_watch.candidates();
        EXPECT_EQ(candidates.size(), 1U);
        return candidates.empty() ? WatchedRequest{} : candidates.front();
    }

    NetworkWatch m_watch;
};

TEST_F(NetworkWatchTest, joinsRequestHeadersAndAnswer)
{
    EXPECT_EQ(request("1", "http://h/clip.mp4"), News::Traffic);
    EXPECT_EQ(wire("1", R"({"cookie":"a=1; b=2","User-Agent":"sent","Referer":"http://p/x"})"),
              News::None);
    EXPECT_EQ(respond("1", "http://h/clip.mp4"), News::Candidate);
    const auto found = only();
    EXPECT_EQ(found.address, u"http://h/clip.mp4");
    EXPECT_EQ(found.namedAddress, u"http://h/clip.mp4");
    EXPECT_EQ(found.mediaType, u"video/mp4");
    EXPECT_EQ(found.length, 1000);
    EXPECT_TRUE(found.isSentKnown);
    EXPECT_EQ(found.sent.cookies, u"a=1; b=2");
    EXPECT_EQ(found.sent.agent, u"sent");
    EXPECT_EQ(found.sent.referer, u"http://p/x");
}

TEST_F(NetworkWatchTest, whatWentOverTheWireMayComeFirst)
{
    EXPECT_EQ(wire("1", R"({"Cookie":"a=1"})"), News::None);
    request("1", "http://h/clip.mp4");
    respond("1", "http://h/clip.mp4");
    EXPECT_EQ(only().sent.cookies, u"a=1");
}

TEST_F(NetworkWatchTest, whatWentOverTheWireMayComeLast)
{
    request("1", "http://h/clip.mp4");
    respond("1", "http://h/clip.mp4");
    EXPECT_FALSE(only().isSentKnown);
    EXPECT_EQ(wire("1", R"({"Cookie":"a=1"})"), News::Candidate);
    EXPECT_TRUE(only().isSentKnown);
    EXPECT_EQ(only().sent.cookies, u"a=1");
}

TEST_F(NetworkWatchTest, withoutWireHeadersKnowsWhatThePageAskedFor)
{
    request("1", "http://h/clip.mp4");
    respond("1", "http://h/clip.mp4");
    EXPECT_FALSE(only().isSentKnown);
    EXPECT_EQ(only().sent.agent, u"asked");
    EXPECT_EQ(only().sent.referer, u"http://p/");
}

TEST_F(NetworkWatchTest, afterARedirectTellsTheLastAddressWithItsOwnHeaders)
{
    request("1", "http://h/go");
    wire("1", R"({"Cookie":"first=1"})");
    redirect("1", "http://cdn/clip.mp4");
    wire("1", R"({"Cookie":"second=2"})");
    respond("1", "http://cdn/clip.mp4");
    EXPECT_EQ(only().namedAddress, u"http://h/go");
    EXPECT_EQ(only().address, u"http://cdn/clip.mp4");
    EXPECT_EQ(only().sent.cookies, u"second=2");
}

TEST_F(NetworkWatchTest, headersOfAnEarlierHopAreNotTakenForTheLast)
{
    request("1", "http://h/go");
    wire("1", R"({"Cookie":"first=1"})");
    redirect("1", "http://cdn/clip.mp4");
    respond("1", "http://cdn/clip.mp4");
    EXPECT_FALSE(only().isSentKnown);
    EXPECT_TRUE(only().sent.cookies.isEmpty());
}

TEST_F(NetworkWatchTest, lengthOfAPartIsThatOfTheWhole)
{
    request("1", "http://h/clip.mp4");
    respond("1", "http://h/clip.mp4", "video/mp4",
            R"({"content-length":"10","Content-Range":"bytes 0-9/5000"})", "206");
    EXPECT_EQ(only().length, 5000);
}

TEST_F(NetworkWatchTest, lengthOfAPartOfAnUnknownWholeIsUnknown)
{
    request("1", "http://h/clip.mp4");
    respond("1", "http://h/clip.mp4", "video/mp4", R"({"Content-Range":"bytes 0-9/*"})", "206");
    data("1", "10");
    end("1");
    EXPECT_FALSE(only().length);
}

TEST_F(NetworkWatchTest, lengthIsCountedWhenNobodySaidIt)
{
    request("1", "http://h/clip.mp4");
    respond("1", "http://h/clip.mp4", "video/mp4", "{}");
    data("1", "700");
    data("1", "30");
    EXPECT_FALSE(only().length);
    end("1");
    EXPECT_EQ(only().length, 730);
}

TEST_F(NetworkWatchTest, lengthOfABrokenAnswerStaysUnknown)
{
    request("1", "http://h/clip.mp4");
    respond("1", "http://h/clip.mp4", "video/mp4", "{}");
    data("1", "700");
    end("1", "Failed");
    EXPECT_FALSE(only().length);
}

TEST_F(NetworkWatchTest, partsOfOneFileAreOneCandidate)
{
    request("1", "http://h/clip.mp4");
    respond("1", "http://h/clip.mp4", "video/mp4", "{}");
    request("2", "http://h/clip.mp4");
    respond("2", "http://h/clip.mp4", "video/mp4", R"({"Content-Range":"bytes 5-9/5000"})", "206");
    EXPECT_EQ(only().length, 5000);
}

TEST_F(NetworkWatchTest, candidatesComeInTheOrderOfTheirRequests)
{
    request("9", "http://h/a.mp4");
    request("1", "http://h/b.mp4");
    respond("1", "http://h/b.mp4");
    respond("9", "http://h/a.mp4");
    const auto candidates = m_watch.candidates();
    ASSERT_EQ(candidates.size(), 2U);
    EXPECT_EQ(candidates[0].address, u"http://h/a.mp4");
}

TEST_F(NetworkWatchTest, whatCannotBeAskedForAgainIsNoCandidate)
{
    request("1", "http://h/clip.mp4", "{}", {}, "POST");
    EXPECT_EQ(respond("1", "http://h/clip.mp4"), News::Traffic);
    request("2", "http://h/clip.mp4", "{}", {}, "OPTIONS");
    respond("2", "http://h/clip.mp4");
    request("3", "data:video/mp4;base64,AAAA");
    respond("3", "data:video/mp4;base64,AAAA");
    request("4", "blob:http://h/1");
    respond("4", "blob:http://h/1");
    EXPECT_TRUE(m_watch.candidates().empty());
}

TEST_F(NetworkWatchTest, errorsAndOtherThingsAreNoCandidates)
{
    for (const char *status : {"404", "403", "500", "204", "304", "0", "-1"}) {
        request("1", "http://h/clip.mp4");
        EXPECT_EQ(respond("1", "http://h/clip.mp4", "video/mp4", "{}", status), News::Traffic);
    }
    request("2", "http://h/");
    EXPECT_EQ(respond("2", "http://h/", "text/html"), News::Traffic);
    request("3", "http://h/list.m3u8");
    respond("3", "http://h/list.m3u8", "application/vnd.apple.mpegurl");
    request("4", "http://h/1.ts");
    respond("4", "http://h/1.ts", "video/mp2t");
    EXPECT_TRUE(m_watch.candidates().empty());
}

TEST_F(NetworkWatchTest, isBusyWhileARequestWaits)
{
    EXPECT_FALSE(m_watch.isBusy());
    request("1", "http://h/a");
    request("2", "http://h/b");
    end("1");
    EXPECT_TRUE(m_watch.isBusy());
    end("2", "Failed");
    EXPECT_FALSE(m_watch.isBusy());
}

TEST_F(NetworkWatchTest, anAnswerToNothingIsIgnored)
{
    respond("1", "http://h/clip.mp4");
    end("1");
    data("1", "5");
    EXPECT_TRUE(m_watch.candidates().empty());
}

TEST_F(NetworkWatchTest, anAnswerThatOvertakesItsRequestIsNotLost)
{
    EXPECT_EQ(respond("1", "http://h/clip.mp4"), News::Traffic);
    EXPECT_TRUE(m_watch.candidates().empty());
    EXPECT_EQ(request("1", "http://h/clip.mp4"), News::Candidate);
    EXPECT_EQ(only().address, u"http://h/clip.mp4");
    EXPECT_EQ(only().length, 1000);
    EXPECT_EQ(only().sent.agent, u"asked");
    EXPECT_TRUE(m_watch.isBusy());
    end("1");
    EXPECT_FALSE(m_watch.isBusy());
}

TEST_F(NetworkWatchTest, aWholeExchangeThatOvertakesItsRequestIsNotLost)
{
    wire("1", R"({"Cookie":"a=1"})");
    respond("1", "http://h/clip.mp4", "video/mp4", "{}");
    data("1", "700");
    end("1");
    EXPECT_EQ(request("1", "http://h/clip.mp4"), News::Candidate);
    EXPECT_EQ(only().length, 700);
    EXPECT_EQ(only().sent.cookies, u"a=1");
    EXPECT_FALSE(m_watch.isBusy());
}

TEST_F(NetworkWatchTest, hostileValuesAreSurvived)
{
    request("1", "http://h/clip.mp4");
    respond("1", "http://h/clip.mp4", "video/mp4", R"({"Content-Length":"-5"})");
    EXPECT_FALSE(only().length);
    respond("1", "http://h/clip.mp4", "video/mp4", R"({"Content-Length":"99999999999999999999"})");
    EXPECT_FALSE(only().length);
    data("1", "1e300");
    data("1", "-1");
    data("1", "\"x\"");
    end("1");
    EXPECT_EQ(only().length, 0);
    for (const char *parameters :
         {R"({})", R"({"requestId":5})", R"({"requestId":"x"})",
          R"({"requestId":"x","request":[]})", R"({"requestId":"x","response":7})",
          R"({"requestId":"x","headers":"h"})"}) {
        for (const char *method :
             {"Network.requestWillBeSent", "Network.requestWillBeSentExtraInfo",
              "Network.responseReceived", "Network.dataReceived", "Network.loadingFinished"}) {
            m_watch.take(devToolsEvent(method, parameters));
        }
    }
    EXPECT_EQ(m_watch.candidates().size(), 1U);
}

TEST_F(NetworkWatchTest, anAnswerThatOnlyTheWireToldOfIsACandidate)
{
    const auto wireAnswer = [this](const QByteArray &parameters) {
        return m_watch.take(devToolsEvent("Network.responseReceivedExtraInfo",
                                          R"({"requestId":"1",)" + parameters + "}"));
    };
    request("1", "http://h/go");
    EXPECT_EQ(wireAnswer(R"("statusCode":302,"headers":{"Content-Type":"video/mp4"})"),
              News::Traffic);
    redirect("1", "http://h/clip");
    EXPECT_EQ(
        wireAnswer(
            R"("statusCode":200,"headers":{"content-type":"video/mp4","Content-Length":"7"})"),
        News::Candidate);
    EXPECT_EQ(only().address, u"http://h/clip");
    EXPECT_EQ(only().mediaType, u"video/mp4");
    EXPECT_EQ(only().length, 7);
    // The page has looked into the file and knows better.
    EXPECT_EQ(respond("1", "http://h/clip", "text/html"), News::Traffic);
    EXPECT_TRUE(m_watch.candidates().empty());
}

TEST_F(NetworkWatchTest, addressesThatNoServerTakesAreNotKept)
{
    const QByteArray tooLong = "http://h/" + QByteArray(20'000, 'x') + ".mp4";
    request("1", tooLong);
    respond("1", tooLong);
    EXPECT_TRUE(m_watch.candidates().empty());
}

TEST_F(NetworkWatchTest, aFloodOfRequestsDoesNotHideTheMedium)
{
    request("first", "http://h/first.mp4");
    respond("first", "http://h/first.mp4");
    for (int i = 0; i < 20'000; ++i) {
        wire(QByteArray::number(i), R"({"Cookie":"flood=1"})");
    }
    request("last", "http://h/last.mp4");
    respond("last", "http://h/last.mp4");
    EXPECT_EQ(m_watch.candidates().size(), 2U);
}

} // namespace
} // namespace tollivar::capture
