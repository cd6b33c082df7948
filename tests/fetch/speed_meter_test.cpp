#include "fetch/speed_meter.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace tollivar::fetch {
namespace {

using std::chrono::milliseconds;

TEST(SpeedMeter, countsPercentInHundredths)
{
    EXPECT_FLOAT_EQ(percentHundredths(0, 200), 0.0F);
    EXPECT_FLOAT_EQ(percentHundredths(101, 200), 5050.0F);
    EXPECT_FLOAT_EQ(percentHundredths(200, 200), 10'000.0F);
    EXPECT_FLOAT_EQ(percentHundredths(0, 0), 10'000.0F);
    EXPECT_FLOAT_EQ(percentHundredths(300, 200), 10'000.0F);
}

TEST(SpeedMeter, theSpeedCountsWholeSecondsOnly)
{
    EXPECT_DOUBLE_EQ(averageSpeed(3'000, milliseconds(2'999)), 1'500.0);
    EXPECT_DOUBLE_EQ(averageSpeed(3'000, milliseconds(3'000)), 1'000.0);
}

TEST(SpeedMeter, withinTheFirstSecondThereIsNoSpeed)
{
    EXPECT_DOUBLE_EQ(averageSpeed(3'000, milliseconds(999)), 0.0);
}

TEST(SpeedMeter, theTimeLeftIsRoundedToTheNearestSecond)
{
    EXPECT_EQ(secondsLeft(0, 1'490, 1'000.0), 1);
    EXPECT_EQ(secondsLeft(0, 1'510, 1'000.0), 2);
    EXPECT_EQ(secondsLeft(1'510, 1'510, 1'000.0), 0);
}

TEST(SpeedMeter, withoutASpeedTheTimeLeftIsUnknown)
{
    EXPECT_EQ(secondsLeft(0, 100, 0.0), tasks::kUnknownSecondsLeft);
    EXPECT_EQ(secondsLeft(0, std::uint64_t{1} << 60U, 0.001), tasks::kUnknownSecondsLeft);
}

TEST(SpeedMeter, sizesBeyond32BitsDoNotWrap)
{
    constexpr std::uint64_t kLarge = std::uint64_t{10} << 32U;
    EXPECT_FLOAT_EQ(percentHundredths(kLarge / 2, kLarge), 5'000.0F);
    EXPECT_GT(averageSpeed(kLarge, milliseconds(1'000)), 4e9);
}

} // namespace
} // namespace tollivar::fetch
