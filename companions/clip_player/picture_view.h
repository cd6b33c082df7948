#pragma once

#include <QWidget>

namespace tollivar::player {

class MediaPlayer;

/// Shows the player's pictures, on black, as large as they fit.
///
/// Threads: the main thread.
/// Owns:    nothing; the player is borrowed and must outlive it.
class PictureView final : public QWidget {
    Q_OBJECT

public:
    PictureView(MediaPlayer &player, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    MediaPlayer &m_player;
};

} // namespace tollivar::player
