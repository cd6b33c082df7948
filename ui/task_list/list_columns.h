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

/// One width for each column, in pixels.
using ColumnWidths = std::array<int, kListColumnCount>;

/// What the texts of a language take in the list's font.
struct ColumnNeeds {
    ColumnWidths headings{}; ///< with room for the arrow
    ColumnWidths texts{};    ///< in the rows, as far as the language makes them
};

/// The width of each column in a list of so many pixels: the columns' own, then as much as makes
/// the headings fit, then the rows' texts, and the rest to the names.
[[nodiscard]] ColumnWidths columnWidths(int available, const ColumnNeeds &needs);

} // namespace tollivar::ui
