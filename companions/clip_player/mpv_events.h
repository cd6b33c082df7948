#pragma once

#include "companions/clip_player/player_state.h"

struct mpv_event;
struct mpv_handle;

namespace tollivar::player {

/// Asks the core to tell of everything that a PlayerState holds.
void observeState(mpv_handle &core);

/// Brings the state up to date with one event; false when that changes nothing.
[[nodiscard]] bool apply(const mpv_event &event, PlayerState &state);

/// After a batch of events: what reached its end and nothing came out of has failed; a position
/// never lies behind the end, where the core has it for a moment.
void settle(PlayerState &state);

} // namespace tollivar::player
