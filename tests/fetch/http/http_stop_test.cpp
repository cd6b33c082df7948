#include "fetch/http/http_client.h"
#include "tests/support/raw_server.h"
#include "tests/support/stalled_look_up.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace tollivar::fetch {
namespace {

using namespace Qt::StringLiterals;
using platform::AutoResetEvent;
using std::chrono::steady_clock;

/// A person sees no delay up to 200 ms; more only for slow machines and sanitizers.
constexpr std::chrono::seconds kAtOnce{2};

/// Opens the address and sets the stop event when `isUnderWay` returns; how long the opening took
/// after that. `isUnderWay` runs on a thread of its own.
template<typename Wait>
steady_clock::duration timeToStopOpening(const QString &address, Wait isUnderWay)
{
    AutoResetEvent stop;
    steady_clock::time_point asked;
    std::thread stopper([&] {
        isUnderWay();
        asked = steady_clock::now();
        stop.set();
    });
    const auto client = HttpClient::open({.address = address}, stop);
    const auto ended = steady_clock::now();
    stopper.join();
    EXPECT_FALSE(client);
    if (!client) {
        EXPECT_EQ(client.error().text, u"stopped");
    }
    EXPECT_TRUE(stop.isSet());
    ::testing::Test::RecordProperty("microseconds",
                                    std::to_string((ended - asked) / std::chrono::microseconds(1)));
    return ended - asked;
}

TEST(HttpStop, endsAConnectionAttemptThatNobodyAnswers)
{
    const test::FullPort nowhere;
    EXPECT_LT(timeToStopOpening(u"http://127.0.0.1:%1/"_s.arg(nowhere.port()),
                                [&nowhere] { nowhere.waitForAttempt(); }),
              kAtOnce);
}

TEST(HttpStop, endsATlsHandshakeThatIsNeverAnswered)
{
    std::promise<void> helloCame;
    const test::RawServer silent([&helloCame](const test::RawServer::Peer &peer) {
        EXPECT_FALSE(peer.receive(1).isEmpty());
        helloCame.set_value();
        peer.stall();
    });
    EXPECT_LT(timeToStopOpening(u"https://127.0.0.1:%1/"_s.arg(silent.port()),
                                [&helloCame] { helloCame.get_future().wait(); }),
              kAtOnce);
}

TEST(HttpStop, endsALookUpThatHangs)
{
    const test::StalledLookUp stalled;
    EXPECT_LT(timeToStopOpening(u"http://%1/"_s.arg(QLatin1StringView(stalled.kHost)),
                                [&stalled] { stalled.waitUntilAsked(); }),
              kAtOnce);
}

} // namespace
} // namespace tollivar::fetch
