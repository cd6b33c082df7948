#include "companions/clip_player/mpv_events.h"

#include <mpv/client.h>

#include <iterator>

namespace tollivar::player {

namespace {

/// A property of the core, and where its value goes; it comes without one when it has none.
struct Observed {
    const char *name;
    mpv_format format;
    void (*store)(PlayerState &state, const void *value);
};

double number(const void *value)
{
    return *static_cast<const double *>(value);
}

std::optional<double> optionalNumber(const void *value)
{
    return value == nullptr ? std::nullopt : std::optional(number(value));
}

bool flag(const void *value)
{
    return value != nullptr && *static_cast<const int *>(value) != 0;
}

void noteDecoded(PlayerState &state, const void *value)
{
    state.hasDecoded = state.hasDecoded || value != nullptr;
}

constexpr Observed kObserved[] = {
    {"time-pos", MPV_FORMAT_DOUBLE,
     [](PlayerState &state, const void *value) { state.position = optionalNumber(value); }},
    {"duration", MPV_FORMAT_DOUBLE,
     [](PlayerState &state, const void *value) { state.duration = optionalNumber(value); }},
    {"volume", MPV_FORMAT_DOUBLE,
     [](PlayerState &state, const void *value) {
         state.volume = optionalNumber(value).value_or(state.volume);
     }},
    {"pause", MPV_FORMAT_FLAG,
     [](PlayerState &state, const void *value) { state.isPaused = flag(value); }},
    {"mute", MPV_FORMAT_FLAG,
     [](PlayerState &state, const void *value) { state.isMuted = flag(value); }},
    {"seekable", MPV_FORMAT_FLAG,
     [](PlayerState &state, const void *value) { state.isSeekable = flag(value); }},
    {"eof-reached", MPV_FORMAT_FLAG,
     [](PlayerState &state, const void *value) { state.hasEnded = flag(value); }},
    {"current-tracks/video/id", MPV_FORMAT_INT64,
     [](PlayerState &state, const void *value) { state.hasPicture = value != nullptr; }},
    {"dwidth", MPV_FORMAT_INT64, noteDecoded},
    {"audio-params/samplerate", MPV_FORMAT_INT64, noteDecoded},
};

/// A new file starts with nothing known of it.
void begin(PlayerState &state)
{
    state.status = PlayerStatus::Loading;
    state.position.reset();
    state.duration.reset();
    state.isSeekable = false;
    state.hasEnded = false;
    state.hasPicture = false;
    state.hasDecoded = false;
}

bool applyEnd(const mpv_event_end_file &end, PlayerState &state)
{
    // A list of other files is as unplayable as a broken one; any other end was asked for.
    if (end.reason != MPV_END_FILE_REASON_ERROR && end.reason != MPV_END_FILE_REASON_REDIRECT) {
        return false;
    }
    state.status = PlayerStatus::Failed;
    return true;
}

} // namespace

void observeState(mpv_handle &core)
{
    for (std::uint64_t place = 0; place < std::size(kObserved); ++place) {
        mpv_observe_property(&core, place, kObserved[place].name, kObserved[place].format);
    }
}

bool apply(const mpv_event &event, PlayerState &state)
{
    switch (event.event_id) {
    case MPV_EVENT_PROPERTY_CHANGE: {
        const auto &property = *static_cast<const mpv_event_property *>(event.data);
        const bool hasValue = property.format != MPV_FORMAT_NONE;
        kObserved[event.reply_userdata].store(state, hasValue ? property.data : nullptr);
        return true;
    }
    case MPV_EVENT_START_FILE:
        begin(state);
        return true;
    // Later than "loaded": by now it is known what there is to see.
    case MPV_EVENT_PLAYBACK_RESTART:
        state.status = PlayerStatus::Loaded;
        return true;
    case MPV_EVENT_END_FILE:
        return applyEnd(*static_cast<const mpv_event_end_file *>(event.data), state);
    default:
        return false;
    }
}

void settle(PlayerState &state)
{
    if (state.status == PlayerStatus::Loaded && state.hasEnded && !state.hasDecoded) {
        state.status = PlayerStatus::Failed;
    }
    if (state.position && state.duration) {
        state.position = std::min(*state.position, *state.duration);
    }
}

} // namespace tollivar::player
