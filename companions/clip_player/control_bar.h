#pragma once

#include "companions/clip_player/player_state.h"

#include <QWidget>

class QLabel;
class QToolButton;

namespace tollivar::player {

class BarSlider;

/// The row of controls: play, position, length, sound, open, full screen. It shows a state and
/// tells what the person wants; it changes nothing by itself.
///
/// Threads: the main thread.
/// Units:   seconds, percent.
class ControlBar final : public QWidget {
    Q_OBJECT

public:
    explicit ControlBar(QWidget *parent);

    void showState(const PlayerState &state);
    void showFullScreen(bool isFullScreen);

Q_SIGNALS:
    void playWanted();
    void positionWanted(double position);
    void muteWanted();
    void volumeWanted(double percent);
    void openWanted();
    void fullScreenWanted();

private:
    QToolButton *addButton(const QString &name, void (ControlBar::*wanted)());
    BarSlider *addSlider(const QString &name);
    QLabel *addTime(const QString &name);

    QToolButton *m_play;
    QLabel *m_position;
    BarSlider *m_seek;
    QLabel *m_duration;
    QToolButton *m_mute;
    BarSlider *m_volume;
    QToolButton *m_fullScreen;
};

} // namespace tollivar::player
