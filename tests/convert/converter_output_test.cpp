#include "convert/converter_output.h"

#include <gtest/gtest.h>

namespace tollivar::convert {

using namespace Qt::StringLiterals;

TEST(ConverterOutput, theDurationEndsAtThePointBeforeTheBitRate)
{
    EXPECT_EQ(durationIn(u"Input #0\n  Duration: 00:03:25.40, start: 0.0, bitrate: 1 kb/s"),
              u"00:03:25"_s);
    EXPECT_EQ(durationIn(u"Duration: N/A, bitrate: 1.5 kb/s"), u"N/A"_s);
    EXPECT_EQ(durationIn(u"Duration: 00:00:05, bitrate: 3"), u"00:00:05"_s);
    EXPECT_EQ(durationIn(u"Duration: 00:00:05"), std::nullopt);
    EXPECT_EQ(durationIn(u"no such field"), std::nullopt);
    EXPECT_EQ(durationIn(u""), std::nullopt);
}

TEST(ConverterOutput, onlyTheWholeFormIsALength)
{
    EXPECT_EQ(secondsOf(u"00:03:25"), 205);
    EXPECT_EQ(secondsOf(u"99:59:59"), 359'999);
    for (const auto text :
         {u"", u"0:03:25", u"00:03:2x", u"00-03:25", u"00:03:255", u"N/A", u"-1:00:00"}) {
        EXPECT_EQ(secondsOf(text), 0);
    }
}

TEST(ProgressReader, tellsWholeSecondsAsAPercentage)
{
    ProgressReader reader(10);
    EXPECT_EQ(reader.take(u"time=3.90 bitrate=1"_s), 30);
    EXPECT_EQ(reader.take(u"\nnothing new"_s), std::nullopt);
    EXPECT_EQ(reader.take(u"time=4.0 x time=5.0 x"_s), 50);
}

TEST(ProgressReader, findsAMarkThatIsCutInTwo)
{
    ProgressReader reader(10);
    EXPECT_EQ(reader.take(u"frame=1 ti"_s), std::nullopt);
    EXPECT_EQ(reader.take(u"me=7"_s), std::nullopt);
    EXPECT_EQ(reader.take(u".20 bitrate"_s), 70);
}

TEST(ProgressReader, neverPassesNinetyNine)
{
    ProgressReader reader(10);
    EXPECT_EQ(reader.take(u"time=10.0 "_s), 100);
    EXPECT_EQ(reader.take(u"time=15.0 "_s), 99);
    EXPECT_EQ(reader.take(u"time=20.0 "_s), 99);
    EXPECT_EQ(reader.take(u"time=21.0 "_s), 0);
    EXPECT_EQ(reader.take(u"time=nan. "_s), 0);
    EXPECT_EQ(reader.take(u"time=-5.0 "_s), 0);
}

TEST(ProgressReader, withoutALengthThereIsNoProgress)
{
    ProgressReader reader(0);
    EXPECT_EQ(reader.take(u"time=3.0 "_s), std::nullopt);
}

TEST(ProgressReader, keepsLittleOfEndlessOutput)
{
    ProgressReader reader(10);
    for (int i = 0; i < 1'000; ++i) {
        EXPECT_EQ(reader.take(QString(10'000, u'x')), std::nullopt);
    }
}

} // namespace tollivar::convert
