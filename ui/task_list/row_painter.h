#pragma once

#include "ui/task_list/row_text.h"

#include <QFont>
#include <QIcon>
#include <QPixmap>
#include <QRect>

#include <array>
#include <cstddef>

class QPainter;

namespace tollivar::ui {

/// The columns of the list, in their order on the screen.
enum class ListColumn : std::size_t { Number, Name, Status, Speed, Target, Mode };
inline constexpr std::size_t kListColumnCount = 6;

/// How a row looks as a whole.
enum class RowLook { Plain, SelectedWithFocus, SelectedWithoutFocus };

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

private:
    void paintName(QPainter &painter, const QRect &cell, const RowText &text);
    static void paintBadge(QPainter &painter, const QRect &cell, const QString &type);
    static void paintStatus(QPainter &painter, const QRect &cell, const RowText &text,
                            RowLook look);

    QIcon m_icon;
    QPixmap m_surface;
};

} // namespace tollivar::ui
