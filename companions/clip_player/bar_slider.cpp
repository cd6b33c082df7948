#include "companions/clip_player/bar_slider.h"

#include "companions/clip_player/look.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace tollivar::player {

namespace {

constexpr int kHandleRadius = 7;
constexpr qreal kGrooveHeight = 4;
/// Room for the handle, and for the ring around it that shows the keyboard's focus.
constexpr int kMargin = kHandleRadius + 3;

} // namespace

BarSlider::BarSlider(QWidget *parent) : QSlider(Qt::Horizontal, parent)
{
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    // Called for what a person does, and for nothing else.
    connect(this, &QAbstractSlider::actionTriggered, this,
            [this] { Q_EMIT moved(sliderPosition()); });
}

QSize BarSlider::sizeHint() const
{
    constexpr int kWidth = 90;
    return {kWidth, 2 * kMargin + 4};
}

int BarSlider::valueAt(int x) const
{
    return QStyle::sliderValueFromPosition(minimum(), maximum(), x - kMargin,
                                           width() - 2 * kMargin);
}

qreal BarSlider::handleX() const
{
    const double range = static_cast<double>(maximum()) - minimum();
    const double share =
        range > 0 ? (static_cast<double>(sliderPosition()) - minimum()) / range : 0;
    return kMargin + share * (width() - 2 * kMargin);
}

bool BarSlider::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // With the focus its arrows are its own; elsewhere they are the window's.
        const int key = dynamic_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Left || key == Qt::Key_Right) {
            event->accept();
            return true;
        }
    }
    if (event->type() == QEvent::ToolTip && m_hintText) {
        const auto *help = dynamic_cast<QHelpEvent *>(event);
        const QString text = m_hintText(valueAt(help->x()));
        if (!text.isEmpty()) {
            QToolTip::showText(help->globalPos(), text, this);
            return true;
        }
    }
    return QSlider::event(event);
}

void BarSlider::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        setSliderDown(true);
        setSliderPosition(valueAt(qRound(event->position().x())));
    }
}

void BarSlider::mouseMoveEvent(QMouseEvent *event)
{
    if (isSliderDown()) {
        setSliderPosition(valueAt(qRound(event->position().x())));
    }
}

void BarSlider::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        setSliderDown(false);
    }
}

void BarSlider::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const qreal middle = height() / 2.0;
    QRectF groove(kMargin, middle - kGrooveHeight / 2, width() - 2 * kMargin, kGrooveHeight);
    const auto bar = [&](const QColor &color) {
        painter.setBrush(color);
        painter.drawRoundedRect(groove, kGrooveHeight / 2, kGrooveHeight / 2);
    };
    bar(look::kGroove);
    if (!isEnabled()) {
        return;
    }
    groove.setRight(handleX());
    const bool isTouched = underMouse() || isSliderDown() || hasFocus();
    bar(isTouched ? look::kAccentBright : look::kAccent);
    const QPointF center(handleX(), middle);
    if (hasFocus()) {
        painter.setBrush(look::kFocusRing);
        painter.drawEllipse(center, kHandleRadius + 3, kHandleRadius + 3);
    }
    painter.setBrush(look::kText);
    const qreal radius = isTouched ? kHandleRadius : kHandleRadius - 2;
    painter.drawEllipse(center, radius, radius);
}

} // namespace tollivar::player
