#include "ui/task_list/list_columns.h"

#include <algorithm>

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

} // namespace

QStringView headingId(ListColumn column)
{
    return kColumns[static_cast<std::size_t>(column)].heading;
}

std::array<int, kListColumnCount> columnWidths(int available)
{
    int spare = available;
    int wanted = 0;
    for (const Column &column : kColumns) {
        spare -= column.width;
        wanted += column.comfortable - column.width;
    }
    spare = std::max(0, spare);
    const int growth = std::min(spare, wanted);
    std::array<int, kListColumnCount> widths{};
    // Shared out by the columns' edges, so that a resize moves none of them to and fro.
    int wantedSoFar = 0;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const auto &[heading, width, comfortable] = kColumns[i];
        const int before = wantedSoFar * growth / wanted;
        wantedSoFar += comfortable - width;
        widths[i] = width + wantedSoFar * growth / wanted - before;
    }
    widths[kName] += spare - growth;
    return widths;
}

} // namespace tollivar::ui
