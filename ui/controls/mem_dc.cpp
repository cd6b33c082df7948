#include "ui/controls/mem_dc.h"

namespace tollivar::ui {

namespace {

/// The pixels whose upper left corner the rectangle covers, as a plain fill takes them.
QRect pixelsOf(const QPainter &target, const QRect &rectangle)
{
    const QRectF exact = target.deviceTransform().mapRect(QRectF(rectangle));
    return {QPoint(qRound(exact.left()), qRound(exact.top())),
            QPoint(qRound(exact.right()) - 1, qRound(exact.bottom()) - 1)};
}

QImage &enlarged(QImage &surface, const QSize &pixels)
{
    if (surface.width() < pixels.width() || surface.height() < pixels.height()) {
        surface = QImage(pixels.expandedTo(surface.size()), QImage::Format_RGB32);
    }
    // An empty image cannot be painted on.
    if (surface.isNull()) {
        surface = QImage(1, 1, QImage::Format_RGB32);
    }
    return surface;
}

} // namespace

CMemDC::CMemDC(QPainter &target, const QRect &rectangle, QImage &surface)
    : m_target(target)
    , m_pixels(pixelsOf(target, rectangle))
    , m_surface(surface)
    , m_painter(&enlarged(surface, m_pixels.size()))
{
    const QPoint origin = m_pixels.topLeft();
    m_painter.setTransform(target.deviceTransform() *
                           QTransform::fromTranslate(-origin.x(), -origin.y()));
}

CMemDC::~CMemDC()
{
    m_painter.end();
    if (m_pixels.isEmpty()) {
        return;
    }
    m_target.save();
    m_target.resetTransform();
    // From here on a unit is a pixel of the device.
    m_target.setTransform(m_target.deviceTransform().inverted());
    m_target.setCompositionMode(QPainter::CompositionMode_Source);
    m_target.drawImage(m_pixels.topLeft(), m_surface, QRect(QPoint(0, 0), m_pixels.size()));
    m_target.restore();
}

} // namespace tollivar::ui
