#include "companions/clip_player/media_player.h"

#include "companions/clip_player/mpv_events.h"

#include <QFile>

#include <mpv/client.h>

namespace tollivar::player {

using platform::AppMessageId;
using platform::Delivery;

MediaPlayer::MediaPlayer(MpvCore core)
    : m_inbox([this](const platform::AppMessage &message) {
        if (message.id == AppMessageId::PlayerPicture) {
            Q_EMIT pictureReady();
        } else {
            takeEvents();
        }
    })
    , m_port(m_inbox.port())
    , m_core(std::move(core))
    , m_pictures(*m_core,
                 [this] { m_port.post(AppMessageId::PlayerPicture, 0, 0, Delivery::NewestWins); })
{
    mpv_set_wakeup_callback(
        m_core.get(),
        [](void *port) {
            static_cast<platform::AppMessagePort *>(port)->post(AppMessageId::PlayerEvents, 0, 0,
                                                                Delivery::NewestWins);
        },
        &m_port);
    observeState(*m_core);
}

MediaPlayer::~MediaPlayer()
{
    mpv_set_wakeup_callback(m_core.get(), nullptr, nullptr);
}

void MediaPlayer::open(const QString &absolutePath)
{
    m_state.path = absolutePath;
    m_state.status = PlayerStatus::Loading;
    setPaused(false);
    // An absolute path is read as a file and as nothing else, whatever its name looks like.
    send(*m_core, {"loadfile", QFile::encodeName(absolutePath)});
}

void MediaPlayer::close()
{
    send(*m_core, {"stop"});
    m_state.status = PlayerStatus::Empty;
    Q_EMIT stateChanged();
}

void MediaPlayer::togglePlaying()
{
    if (m_state.hasEnded) {
        seekTo(0);
        setPaused(false);
    } else {
        send(*m_core, {"cycle", "pause"});
    }
}

void MediaPlayer::setPaused(bool isPaused)
{
    int flag = isPaused ? 1 : 0;
    mpv_set_property_async(m_core.get(), 0, "pause", MPV_FORMAT_FLAG, &flag);
}

void MediaPlayer::seekTo(double position)
{
    const double target = std::clamp(position, 0.0, m_state.duration.value_or(position));
    send(*m_core, {"seek", QByteArray::number(target, 'f', 3), "absolute+exact"});
}

void MediaPlayer::seekBy(double step)
{
    send(*m_core, {"seek", QByteArray::number(step, 'f', 3), "relative+exact"});
}

void MediaPlayer::setVolume(double percent)
{
    mpv_set_property_async(m_core.get(), 0, "volume", MPV_FORMAT_DOUBLE, &percent);
}

void MediaPlayer::changeVolume(double step)
{
    send(*m_core, {"add", "volume", QByteArray::number(step, 'f', 1)});
}

void MediaPlayer::toggleMuted()
{
    send(*m_core, {"cycle", "mute"});
}

void MediaPlayer::takeEvents()
{
    bool isChanged = false;
    for (;;) {
        const mpv_event *event = mpv_wait_event(m_core.get(), 0);
        if (event->event_id == MPV_EVENT_NONE) {
            break;
        }
        isChanged = apply(*event, m_state) || isChanged;
    }
    if (isChanged) {
        settle(m_state);
        Q_EMIT stateChanged();
    }
}

} // namespace tollivar::player
