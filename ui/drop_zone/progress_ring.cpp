#include "ui/drop_zone/progress_ring.h"

#include <QPainter>

#include <algorithm>

namespace tollivar::ui {

namespace {

constexpr double kWidth = 4;
constexpr double kFromEdge = 5;
constexpr double kTrackOpacity = 0.3;
/// The painter's unit: sixteenths of a degree, counted against the clock from three o'clock.
constexpr int kTop = 90 * 16;
constexpr int kRound = 360 * 16;

} // namespace

ProgressRing::ProgressRing(QWidget &parent) : QWidget(&parent)
{
    setObjectName(QStringLiteral("ringTotal"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry(parent.rect());
    hide();
}

void ProgressRing::setShare(std::optional<double> share)
{
    setVisible(share.has_value());
    if (share) {
        m_share = std::clamp(*share, 0.0, 1.0);
        update();
    }
}

void ProgressRing::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(foregroundRole()), kWidth, Qt::SolidLine, Qt::FlatCap));
    constexpr double kInset = kFromEdge + kWidth / 2;
    const QRectF ring = QRectF(rect()).adjusted(kInset, kInset, -kInset, -kInset);
    painter.setOpacity(kTrackOpacity);
    painter.drawEllipse(ring);
    painter.setOpacity(1);
    painter.drawArc(ring, kTop, -static_cast<int>(m_share * kRound));
}

} // namespace tollivar::ui
