#pragma once

#include <QRect>
#include <QSize>
#include <QString>

class QFont;
class QPainter;

namespace tollivar::ui {

/// How texts stand in the cells of the task list. What does not fit is shortened with an ellipsis.

/// Free on both sides of every text.
inline constexpr int kTextMargin = 4;

/// One line, in the middle of the height.
void paintLine(QPainter &painter, const QRect &area, Qt::Alignment alignment, const QString &text,
               Qt::TextElideMode shortening = Qt::ElideRight);

/// As many centred lines as the height holds, broken between words.
void paintWrapped(QPainter &painter, const QRect &area, const QString &text);

/// Whether paintLine() has to shorten the text.
[[nodiscard]] bool isLineCut(const QString &text, int width, const QFont &font);

/// Whether paintWrapped() has to shorten the text.
[[nodiscard]] bool isWrappedCut(const QString &text, const QSize &area, const QFont &font);

} // namespace tollivar::ui
