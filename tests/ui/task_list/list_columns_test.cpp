#include "ui/task_list/list_columns.h"

#include <gtest/gtest.h>

#include <numeric>

namespace tollivar::ui {
namespace {

using Widths = std::array<int, kListColumnCount>;

TEST(ListColumns, haveTheirWidthsInAListOfThatWidth)
{
    EXPECT_EQ(columnWidths(560), (Widths{40, 180, 150, 70, 60, 60}));
}

TEST(ListColumns, keepTheirWidthsInANarrowerList)
{
    EXPECT_EQ(columnWidths(300), columnWidths(560));
    EXPECT_EQ(columnWidths(0), columnWidths(560));
    EXPECT_EQ(columnWidths(-1), columnWidths(560));
}

TEST(ListColumns, fillAWiderListToThePixel)
{
    for (int width = 560; width < 2'000; ++width) {
        const Widths widths = columnWidths(width);
        EXPECT_EQ(std::accumulate(widths.begin(), widths.end(), 0), width);
    }
}

TEST(ListColumns, noEdgeMovesBackAsTheListGrows)
{
    for (int width = 560; width < 2'000; ++width) {
        Widths edges = columnWidths(width);
        Widths wider = columnWidths(width + 1);
        std::partial_sum(edges.begin(), edges.end(), edges.begin());
        std::partial_sum(wider.begin(), wider.end(), wider.begin());
        for (std::size_t i = 0; i < edges.size(); ++i) {
            EXPECT_LE(edges[i], wider[i]);
        }
    }
}

TEST(ListColumns, inAVeryWideListTheNamesGrowAlone)
{
    Widths expected = columnWidths(1'500);
    expected[1] += 500;
    EXPECT_EQ(columnWidths(2'000), expected);
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
