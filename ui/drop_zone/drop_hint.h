#pragma once

#include <QLabel>
#include <QPoint>
#include <QRect>
#include <QSize>

namespace tollivar::ui {

/// Says beside the drop zone what letting go there will do. A window of its own, as the zone is
/// smaller than any sentence; it never takes a click or the keyboard.
///
/// Threads: the main thread.
class DropHint final : public QLabel {
    Q_OBJECT

public:
    explicit DropHint(QWidget &zone);

    void showBeside(const QRect &zone, const QString &text);
};

/// Where something of that size stands beside a window: below it, or above it when there is no room
/// below, and never beyond the left and right edge of the screen's area.
[[nodiscard]] QPoint placeBeside(const QRect &window, QSize size, const QRect &area);

} // namespace tollivar::ui
