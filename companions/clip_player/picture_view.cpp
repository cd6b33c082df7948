#include "companions/clip_player/picture_view.h"

#include "companions/clip_player/look.h"
#include "companions/clip_player/media_player.h"

#include <QPainter>

namespace tollivar::player {

PictureView::PictureView(MediaPlayer &player, QWidget *parent) : QWidget(parent), m_player(player)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&player, &MediaPlayer::pictureReady, this, qOverload<>(&QWidget::update));
}

void PictureView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    const QImage &picture = m_player.pictures().newest();
    if (picture.isNull()) {
        painter.fillRect(rect(), look::kStage);
        return;
    }
    // Of another size only for the moment after a resize, until it is drawn anew.
    const QSizeF size = QSizeF(picture.size()) / devicePixelRatioF();
    painter.drawImage(QRectF(rect()).size() == size ? QRectF(QPointF(), size) : QRectF(rect()),
                      picture);
}

void PictureView::resizeEvent(QResizeEvent * /*event*/)
{
    m_player.pictures().setSize((QSizeF(size()) * devicePixelRatioF()).toSize());
}

} // namespace tollivar::player
