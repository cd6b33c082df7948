#include "companions/pageprobe/time_limit.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;
using tollivar::platform::AutoResetEvent;
using tollivar::probe::TimeLimit;

TEST(TimeLimit, asksForAStopWhenPatienceEnds)
{
    AutoResetEvent stop;
    const TimeLimit limit(stop, 1ms, 1h);
    EXPECT_TRUE(stop.wait(60s));
}

TEST(TimeLimit, endsAtOnceWithItsOwner)
{
    AutoResetEvent stop;
    const auto begin = std::chrono::steady_clock::now();
    {
        const TimeLimit limit(stop, 1h, 2h);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 30s);
    EXPECT_FALSE(stop.isSet());
}

TEST(TimeLimitDeathTest, endsTheProcessThatDoesNotStop)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto hang = [] {
        AutoResetEvent stop;
        const TimeLimit limit(stop, 1ms, 2ms);
        std::mutex mutex;
        std::unique_lock lock(mutex);
        std::condition_variable().wait(lock, [] { return false; });
    };
    EXPECT_EXIT(hang(), ::testing::ExitedWithCode(1), "");
}

} // namespace
