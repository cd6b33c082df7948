#pragma once

#include <QPainter>
#include <QPixmap>
#include <QRect>

namespace tollivar::ui {

/// A drawing surface off the screen for one rectangle; what was drawn reaches the target in one
/// block, so that nothing flickers.
///
/// Threads: the main thread.
/// Owns:    nothing: `surface` lends its memory, and is made larger when needed; target and
///          surface must outlive it.
/// States:  draw with painter() in the target's coordinates; the destructor copies.
class CMemDC {
public:
    CMemDC(QPainter &target, const QRect &rectangle, QPixmap &surface);
    ~CMemDC();
    CMemDC(const CMemDC &) = delete;
    CMemDC &operator=(const CMemDC &) = delete;

    [[nodiscard]] QPainter &painter() { return m_painter; }

private:
    QPainter &m_target;
    QRect m_rectangle;
    QPixmap &m_surface;
    QPainter m_painter;
};

} // namespace tollivar::ui
