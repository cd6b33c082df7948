#pragma once

#include <QString>

#include <optional>

namespace tollivar::player {

enum class PlayerStatus {
    Empty,   ///< nothing was opened yet
    Loading, ///< the file is being looked at
    Loaded,  ///< it plays, is paused, or stands at its end
    Failed   ///< it cannot be played
};

/// What the player does at this moment; a plain value for whoever shows it.
///
/// Units: seconds, percent; nothing where the file does not tell.
struct PlayerState {
    PlayerStatus status = PlayerStatus::Empty;
    QString path{};
    std::optional<double> position{};
    std::optional<double> duration{};
    double volume = 100.0;
    bool isPaused = false;
    bool isMuted = false;
    bool isSeekable = false;
    bool hasEnded = false;
    bool hasPicture = false; ///< there is something to see in it, decoded yet or not
    bool hasDecoded = false; ///< a picture or a sound has come out of it

    [[nodiscard]] bool isPlaying() const
    {
        return status == PlayerStatus::Loaded && !isPaused && !hasEnded;
    }
};

} // namespace tollivar::player
