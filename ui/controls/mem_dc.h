#pragma once

#include <QImage>
#include <QPainter>
#include <QPoint>
#include <QRect>

namespace tollivar::ui {

/// A drawing surface off the screen for one rectangle; what was drawn reaches the target in one
/// block, so that nothing flickers. It has the target's pixels, whatever their ratio and wherever
/// the rectangle falls between them: nothing is scaled on the way.
///
/// Threads: the main thread.
/// Owns:    nothing: `surface` lends its memory, and is made larger when needed; target and
///          surface must outlive it.
/// States:  draw over the whole rectangle with painter(), in the target's coordinates; what the
///          surface held before is undefined. The destructor copies.
class CMemDC {
public:
    CMemDC(QPainter &target, const QRect &rectangle, QImage &surface);
    ~CMemDC();
    CMemDC(const CMemDC &) = delete;
    CMemDC &operator=(const CMemDC &) = delete;

    [[nodiscard]] QPainter &painter() { return m_painter; }

private:
    QPainter &m_target;
    QRect m_pixels; ///< the rectangle in pixels of the target's device
    QImage &m_surface;
    QPainter m_painter;
};

} // namespace tollivar::ui
