#pragma once

#include <QStringView>

#include <array>
#include <cstddef>

namespace tollivar::ui {

/// The columns of the list, in their order on the screen.
enum class ListColumn : std::size_t { Number, Name, Status, Speed, Target, Mode };
inline constexpr std::size_t kListColumnCount = 6;

/// Id of the column's heading among the texts.
[[nodiscard]] QStringView headingId(ListColumn column);

/// The width of each column in a list of so many pixels: the columns' own, then as much as makes
/// their texts fit, and the rest to the names.
[[nodiscard]] std::array<int, kListColumnCount> columnWidths(int available);

} // namespace tollivar::ui
