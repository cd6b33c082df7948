#include "companions/clip_player/time_text.h"

#include <gtest/gtest.h>

#include <limits>

namespace tollivar::player {

using namespace Qt::StringLiterals;

TEST(TimeText, showsHoursOnlyWhereThereAreAny)
{
    EXPECT_EQ(timeText(0), u"0:00"_s);
    EXPECT_EQ(timeText(7.99), u"0:07"_s);
    EXPECT_EQ(timeText(725), u"12:05"_s);
    EXPECT_EQ(timeText(3'599.9), u"59:59"_s);
    EXPECT_EQ(timeText(3'723), u"1:02:03"_s);
}

TEST(TimeText, whatIsNoTimeIsUnknown)
{
    EXPECT_EQ(timeText({}), u"-:--"_s);
    EXPECT_EQ(timeText(std::numeric_limits<double>::quiet_NaN()), u"-:--"_s);
    EXPECT_EQ(timeText(std::numeric_limits<double>::infinity()), u"-:--"_s);
    EXPECT_EQ(timeText(1e300), u"-:--"_s);
    EXPECT_EQ(timeText(-3), u"0:00"_s);
}

} // namespace tollivar::player
