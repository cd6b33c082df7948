#include "platform/auto_reset_event.h"

namespace {

using namespace std::chrono_literals;
using tollivar::platform::AutoResetEvent;

constexpr auto kLong = 60s;
using Clock = std::chrono::steady_clock;

TEST(AutoResetEvent, isTakenBackByOnePoll)
{
    AutoResetEvent event;
    EXPECT_FALSE(event.poll());
    event.set();
    event.set();
    EXPECT_TRUE(event.isSet());
    EXPECT_TRUE(event.isSet());
    EXPECT_TRUE(event.poll());
    EXPECT_FALSE(event.isSet());
    EXPECT_FALSE(event.poll());
}

TEST(AutoResetEvent, isTakenBackByOneWait)
{
    AutoResetEvent event;
    event.set();
    EXPECT_TRUE(event.wait(kLong));
    EXPECT_FALSE(event.wait(0ms));
}

TEST(AutoResetEvent, isClearedByAReset)
{
    AutoResetEvent event;
    event.set();
    event.reset();
    EXPECT_FALSE(event.poll());
}

TEST(AutoResetEvent, waitsAsLongAsTold)
{
    AutoResetEvent event;
    const auto begin = Clock::now();
    EXPECT_FALSE(event.wait(20ms));
    EXPECT_GE(Clock::now() - begin, 20ms);
}

TEST(AutoResetEvent, wakesAWaitingThread)
{
    AutoResetEvent event;
    std::atomic<bool> wasWoken = false;
    std::thread waiter([&] { wasWoken = event.wait(kLong); });
    event.set();
    waiter.join();
    EXPECT_TRUE(wasWoken);
    EXPECT_FALSE(event.poll());
}

TEST(AutoResetEvent, isSeenByExactlyOneOfManyThreads)
{
    // 500 rounds of 4 pollers: catches an event that is seen twice or lost.
    AutoResetEvent event;
    for (int round = 0; round < 500; ++round) {
        std::atomic<int> seen = 0;
        event.set();
        std::vector<std::thread> pollers;
        for (int t = 0; t < 4; ++t) {
            pollers.emplace_back([&] { seen += event.poll() ? 1 : 0; });
        }
        for (std::thread &poller : pollers) {
            poller.join();
        }
        ASSERT_EQ(seen, 1);
    }
}

TEST(AutoResetEvent, passesBackAndForthWithoutLosingATurn)
{
    // 5,000 turns between two threads: catches a wake-up that gets lost.
    AutoResetEvent ping;
    AutoResetEvent pong;
    std::thread other([&] {
        for (int i = 0; i < 5'000 && ping.wait(kLong); ++i) {
            pong.set();
        }
    });
    int turns = 0;
    for (; turns < 5'000; ++turns) {
        ping.set();
        if (!pong.wait(kLong)) {
            break;
        }
    }
    other.join();
    EXPECT_EQ(turns, 5'000);
}

TEST(AutoResetEventWatch, isCalledAtEachSetWhileItLives)
{
    AutoResetEvent event;
    int first = 0;
    int second = 0;
    {
        const AutoResetEvent::Watch one(event, [&first] { ++first; });
        event.set();
        event.reset();
        const AutoResetEvent::Watch other(event, [&second] { ++second; });
        event.set();
    }
    event.set();
    EXPECT_EQ(first, 2);
    EXPECT_EQ(second, 1);
}

TEST(AutoResetEventWatch, isCalledAtOnceWhenTheEventIsSetAlready)
{
    AutoResetEvent event;
    event.set();
    int calls = 0;
    const AutoResetEvent::Watch watch(event, [&calls] { ++calls; });
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(event.isSet());
}

TEST(AutoResetEventWatch, neverMissesASetAndIsNeverCalledAfterItsEnd)
{
    // 2,000 watches that begin and end while another thread sets the event: catches a set that
    // falls between the look at the flag and the watch, and a call into a dead watch.
    AutoResetEvent event;
    for (int i = 0; i < 2'000; ++i) {
        std::atomic<bool> mayGo = false;
        std::thread setter([&] {
            while (!mayGo) {
            }
            event.set();
        });
        auto calls = std::make_unique<std::atomic<int>>(0);
        {
            mayGo = true;
            const AutoResetEvent::Watch watch(event, [&calls] { ++*calls; });
            while (*calls == 0) {
                std::this_thread::yield();
            }
        }
        calls.reset();
        setter.join();
        event.reset();
    }
}

} // namespace
