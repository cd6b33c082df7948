#include "ui/main_window/caption_texts.h"

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

TEST(CaptionTexts, aFilterTellsItsCount)
{
    EXPECT_EQ(filterCaption(u"Downloading"_s, 3), u"Downloading (3)"_s);
}

TEST(CaptionTexts, totalsTellCountsAndSpeed)
{
    const QString pattern = u"%1 downloading, %2 waiting"_s;
    EXPECT_EQ(totalsText(pattern, 0, 0, 0), QString());
    EXPECT_EQ(totalsText(pattern, 0, 2, 0), u"0 downloading, 2 waiting"_s);
    EXPECT_EQ(totalsText(pattern, 3, 1, 1.84 * 1024 * 1024),
              u"3 downloading, 1 waiting   1.84 MB/s"_s);
}

TEST(CaptionTexts, speedChangesItsUnitAtOneMegabyte)
{
    EXPECT_EQ(speedText(0), u"0 KB/s"_s);
    EXPECT_EQ(speedText(312.4 * 1024), u"312 KB/s"_s);
    EXPECT_EQ(speedText(1024.0 * 1024), u"1.00 MB/s"_s);
}

} // namespace tollivar::ui
