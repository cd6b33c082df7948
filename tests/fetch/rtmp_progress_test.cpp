#include "fetch/rtmp_download.h"

#include <gtest/gtest.h>

#include <limits>

namespace tollivar::fetch {

using namespace std::chrono_literals;

TEST(RtmpProgress, isRoundedDownToTenths)
{
    EXPECT_DOUBLE_EQ(rtmpProgress(10, 3'339, 1, 1s).percent, 33.3);
    EXPECT_DOUBLE_EQ(rtmpProgress(10, 9'999, 1, 1s).percent, 99.9);
    EXPECT_DOUBLE_EQ(rtmpProgress(10, 10'000, 1, 1s).percent, 100);
    EXPECT_DOUBLE_EQ(rtmpProgress(10, 20'000, 1, 1s).percent, 100);
}

TEST(RtmpProgress, projectsTheWholeSizeAndTheWholeTime)
{
    const RtmpProgress half = rtmpProgress(10, 5'000, 1'001, 7s);
    EXPECT_EQ(half.projectedSize, 2'002U);
    EXPECT_EQ(half.wholeSeconds, 14);
    EXPECT_EQ(rtmpProgress(10, 3'000, 100, 1s).projectedSize, 333U);
    EXPECT_EQ(rtmpProgress(10, 3'000, 100, 1s).wholeSeconds, 3);
}

TEST(RtmpProgress, knowsNothingBeforeTheFirstTenthAndWithoutADuration)
{
    for (const RtmpProgress &progress :
         {rtmpProgress(0, 5'000, 100, 1s), rtmpProgress(10, 9, 100, 1s),
          rtmpProgress(-1, 5'000, 100, 1s),
          rtmpProgress(std::numeric_limits<double>::quiet_NaN(), 5'000, 100, 1s),
          rtmpProgress(std::numeric_limits<double>::infinity(), 5'000, 100, 1s)}) {
        EXPECT_EQ(progress.percent, 0);
        EXPECT_EQ(progress.projectedSize, tasks::kUnknownSize);
        EXPECT_EQ(progress.wholeSeconds, tasks::kUnknownSecondsLeft);
    }
}

TEST(RtmpProgress, saturatesInsteadOfOverflowing)
{
    const RtmpProgress huge =
        rtmpProgress(1e6, 1'000'001, std::numeric_limits<std::uint64_t>::max(), 24h * 365'000);
    EXPECT_EQ(huge.projectedSize, tasks::kUnknownSize - 1);
    EXPECT_EQ(huge.wholeSeconds, std::numeric_limits<std::int32_t>::max());
}

} // namespace tollivar::fetch
