#pragma once

#include "ui/task_list/list_columns.h"
#include "ui/task_list/row_text.h"

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QImage>
#include <QRect>

#include <array>

class QPainter;

namespace tollivar::ui {

/// Of the list, and of a row that is not selected.
inline constexpr QColor kListBack(241, 245, 250);

/// How a row looks as a whole.
enum class RowLook {
    Plain,
    PlainCurrent, ///< the keys act from here, though it is not selected
    SelectedWithFocus,
    SelectedWithoutFocus,
};

/// Draws rows of the task list: each off the screen, then in one block.
///
/// Threads: the main thread.
class RowPainter {
public:
    /// `icon` is drawn in every row, under the badge of the type.
    explicit RowPainter(QIcon icon) : m_icon(std::move(icon)) {}

    /// The cells lie side by side in `row`, in logical pixels of the target.
    void paint(QPainter &target, const QRect &row, const std::array<QRect, kListColumnCount> &cells,
               const RowText &text, RowLook look, const QFont &font);

    /// Whether a cell of that size is too small for its texts, so that they are cut.
    [[nodiscard]] static bool isCut(ListColumn column, const QSize &cell, const RowText &text,
                                    const QFont &font);

private:
    void paintName(QPainter &painter, const QRect &cell, const RowText &text) const;

    QIcon m_icon;
    QImage m_surface;
};

} // namespace tollivar::ui
