#pragma once

#include "companions/clip_player/mpv_core.h"
#include "companions/clip_player/picture_source.h"
#include "companions/clip_player/player_state.h"
#include "platform/message_port.h"

#include <QObject>

namespace tollivar::player {

/// Plays one file at a time, and tells what it does.
///
/// Threads: the main thread. No call waits for the core: commands are sent, and what becomes of
///          them arrives in state().
/// Owns:    the core and the source of its pictures.
/// States:  every command is legal at any time; without a loaded file it does nothing.
/// Units:   seconds, percent.
class MediaPlayer final : public QObject {
    Q_OBJECT

public:
    explicit MediaPlayer(MpvCore core);
    ~MediaPlayer() override;
    MediaPlayer(const MediaPlayer &) = delete;
    MediaPlayer &operator=(const MediaPlayer &) = delete;

    /// Plays a file from its beginning, in place of what played.
    void open(const QString &absolutePath);
    void close();
    /// Goes on or pauses; at the end it plays from the beginning.
    void togglePlaying();
    void seekTo(double position);
    void seekBy(double step);
    void setVolume(double percent);
    void changeVolume(double step);
    void toggleMuted();

    [[nodiscard]] const PlayerState &state() const { return m_state; }
    [[nodiscard]] PictureSource &pictures() { return m_pictures; }

Q_SIGNALS:
    void stateChanged();
    /// There is a new one in pictures().
    void pictureReady();

private:
    void takeEvents();
    void setPaused(bool isPaused);

    PlayerState m_state;
    platform::AppMessageInbox m_inbox;
    platform::AppMessagePort m_port;
    MpvCore m_core;
    PictureSource m_pictures;
};

} // namespace tollivar::player
