#include "ui/task_list/list_columns.h"

#include <gtest/gtest.h>

#include <numeric>

namespace tollivar::ui {
namespace {

using Widths = ColumnWidths;

/// As they are for an ordinary language.
const ColumnNeeds kNeeds{{38, 60, 60, 65, 66, 119}, {0, 0, 0, 0, 0, 137}};

TEST(ListColumns, haveTheirWidthsInAListOfThatWidth)
{
    EXPECT_EQ(columnWidths(560, kNeeds), (Widths{40, 180, 150, 70, 60, 60}));
}

TEST(ListColumns, keepTheirWidthsInANarrowerList)
{
    EXPECT_EQ(columnWidths(300, kNeeds), columnWidths(560, kNeeds));
    EXPECT_EQ(columnWidths(0, kNeeds), columnWidths(560, kNeeds));
    EXPECT_EQ(columnWidths(-1, kNeeds), columnWidths(560, kNeeds));
}

TEST(ListColumns, fillAWiderListToThePixel)
{
    for (int width = 560; width < 2'000; ++width) {
        const Widths widths = columnWidths(width, kNeeds);
        EXPECT_EQ(std::accumulate(widths.begin(), widths.end(), 0), width);
    }
}

TEST(ListColumns, noEdgeMovesBackAsTheListGrows)
{
    for (int width = 560; width < 2'000; ++width) {
        Widths edges = columnWidths(width, kNeeds);
        Widths wider = columnWidths(width + 1, kNeeds);
        std::partial_sum(edges.begin(), edges.end(), edges.begin());
        std::partial_sum(wider.begin(), wider.end(), wider.begin());
        for (std::size_t i = 0; i < edges.size(); ++i) {
            EXPECT_LE(edges[i], wider[i]);
        }
    }
}

TEST(ListColumns, inAVeryWideListTheNamesGrowAlone)
{
    Widths expected = columnWidths(1'500, kNeeds);
    expected[1] += 500;
    EXPECT_EQ(columnWidths(2'000, kNeeds), expected);
}

TEST(ListColumns, headingsGetRoomBeforeRows)
{
    const Widths widths = columnWidths(560 + 65, kNeeds);
    EXPECT_EQ(widths, (Widths{40, 180, 150, 70, 66, 119}));
}

TEST(ListColumns, growWithTheTextsOfALanguage)
{
    EXPECT_EQ(columnWidths(1'000, {})[5], 124);
    EXPECT_EQ(columnWidths(1'000, kNeeds)[5], 137);
}

TEST(ListColumns, haveTheHeadingsOfTheirIds)
{
    EXPECT_EQ(headingId(ListColumn::Number), u"strColNum");
    EXPECT_EQ(headingId(ListColumn::Name), u"strColName");
    EXPECT_EQ(headingId(ListColumn::Status), u"strColStatus");
    EXPECT_EQ(headingId(ListColumn::Speed), u"strColSpeed");
    EXPECT_EQ(headingId(ListColumn::Target), u"strColTarget");
    EXPECT_EQ(headingId(ListColumn::Mode), u"strColMode");
}

} // namespace
} // namespace tollivar::ui
