#include "ui/controls/mem_dc.h"

namespace tollivar::ui {

namespace {

QPixmap &enlarged(QPixmap &surface, const QSize &size, qreal ratio)
{
    const QSize pixels = (QSizeF(size) * ratio).toSize();
    if (surface.devicePixelRatio() != ratio || surface.width() < pixels.width() ||
        surface.height() < pixels.height()) {
        surface = QPixmap(pixels.expandedTo(surface.size()));
        surface.setDevicePixelRatio(ratio);
    }
    return surface;
}

} // namespace

CMemDC::CMemDC(QPainter &target, const QRect &rectangle, QPixmap &surface)
    : m_target(target)
    , m_rectangle(rectangle)
    , m_surface(surface)
    , m_painter(&enlarged(surface, rectangle.size(), target.device()->devicePixelRatioF()))
{
    m_painter.translate(-rectangle.topLeft());
}

CMemDC::~CMemDC()
{
    m_painter.end();
    const QRectF source(QPointF(0, 0), QSizeF(m_rectangle.size()) * m_surface.devicePixelRatio());
    m_target.drawPixmap(QRectF(m_rectangle), m_surface, source);
}

} // namespace tollivar::ui
