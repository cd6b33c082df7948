#include "ui/task_list/list_columns.h"

#include <algorithm>

namespace tollivar::ui {

namespace {

struct Column {
    QStringView heading;
    int width; ///< pixels
    int share; ///< of what a wider list has beyond all widths, in percent
};

constexpr std::array<Column, kListColumnCount> kColumns = {{
    {u"strColNum", 40, 2},
    {u"strColName", 180, 45},
    {u"strColStatus", 150, 25},
    {u"strColSpeed", 70, 8},
    {u"strColTarget", 60, 4},
    {u"strColMode", 60, 16},
}};

constexpr auto kName = static_cast<std::size_t>(ListColumn::Name);

} // namespace

QStringView headingId(ListColumn column)
{
    return kColumns[static_cast<std::size_t>(column)].heading;
}

std::array<int, kListColumnCount> columnWidths(int available)
{
    constexpr int kPercent = 100;
    int extra = available;
    for (const Column &column : kColumns)
        extra -= column.width;
    extra = std::max(0, extra);
    std::array<int, kListColumnCount> widths{};
    int rest = extra;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const int share = extra * kColumns[i].share / kPercent;
        widths[i] = kColumns[i].width + share;
        rest -= share;
    }
    widths[kName] += rest;
    return widths;
}

} // namespace tollivar::ui
