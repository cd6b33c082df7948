#include "ui/task_list/list_columns.h"

#include <algorithm>
#include <numeric>

namespace tollivar::ui {

namespace {

struct Column {
    QStringView heading;
    int width = 0;       ///< pixels
    int comfortable = 0; ///< holds what the column mostly shows without cutting it
};

constexpr std::array<Column, kListColumnCount> kColumns = {{
    {u"strColNum", 40, 44},
    {u"strColName", 180, 235},
    {u"strColStatus", 150, 268},
    {u"strColSpeed", 70, 100},
    {u"strColTarget", 60, 64},
    {u"strColMode", 60, 124},
}};

constexpr auto kName = static_cast<std::size_t>(ListColumn::Name);

/// Gives each column what it lacks of its wanted width, or its part of what there is; how much was
/// given in all.
int grow(ColumnWidths &widths, const ColumnWidths &wanted, int spare)
{
    int lacking = 0;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        lacking += wanted[i] - widths[i];
    }
    const int growth = std::min(spare, lacking);
    // Shared out by the columns' edges, so that a resize moves none of them to and fro.
    int lackingSoFar = 0;
    for (std::size_t i = 0; i < widths.size() && lacking > 0; ++i) {
        const int before = lackingSoFar * growth / lacking;
        lackingSoFar += wanted[i] - widths[i];
        widths[i] += lackingSoFar * growth / lacking - before;
    }
    return growth;
}

} // namespace

QStringView headingId(ListColumn column)
{
    return kColumns[static_cast<std::size_t>(column)].heading;
}

ColumnWidths columnWidths(int available, const ColumnNeeds &needs)
{
    ColumnWidths widths{};
    ColumnWidths withHeadings{};
    ColumnWidths comfortable{};
    for (std::size_t i = 0; i < widths.size(); ++i) {
        widths[i] = kColumns[i].width;
        withHeadings[i] = std::max(widths[i], needs.headings[i]);
        comfortable[i] = std::max({withHeadings[i], kColumns[i].comfortable, needs.texts[i]});
    }
    int spare = std::max(0, available - std::accumulate(widths.begin(), widths.end(), 0));
    spare -= grow(widths, withHeadings, spare);
    spare -= grow(widths, comfortable, spare);
    widths[kName] += spare;
    return widths;
}

} // namespace tollivar::ui
