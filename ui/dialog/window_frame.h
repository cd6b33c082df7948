#pragma once

#include "ui/dialog/hit_test.h"

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QRect>

class QDialog;
class QMouseEvent;
class QWindow;

namespace tollivar::ui {

/// What a frame would do for a window that has none: moves it by its caption, resizes it by its
/// edges, maximises it on a double click.
///
/// Asks the window manager to move and resize; where there is none, does it itself.
///
/// Threads: the main thread.
/// Owns:    nothing; lives as a child of the window.
class WindowFrame final : public QObject {
    Q_OBJECT

public:
    WindowFrame(QDialog &window, const DuiLib::CPaintManagerUI &manager);

    /// Takes over where a visible window really is, before it changes its size by itself: with the
    /// size goes the place, and from a wrong one the window would jump.
    void learnPlace();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The caption was clicked twice in a window that can be resized.
    void captionDoubleClicked();

private:
    [[nodiscard]] bool handlePress(const QMouseEvent &event);
    /// Takes over where the window really is, if its native window has not heard of it.
    void correctPlace(QPoint actual);
    [[nodiscard]] bool handleMove(const QMouseEvent &event);
    [[nodiscard]] bool handleDoubleClick(const QMouseEvent &event);
    [[nodiscard]] HitArea areaAt(QPoint position) const;
    void dragTo(QPoint global);
    void showCursor(const HitArea &area);

    QDialog &m_window;
    const DuiLib::CPaintManagerUI &m_manager;
    QPointer<QWindow> m_native;
    HitArea m_pressed;
    QPoint m_pressPlace;   ///< on the screen
    QRect m_pressGeometry; ///< of the window
    bool m_isDragging = false;
};

} // namespace tollivar::ui
