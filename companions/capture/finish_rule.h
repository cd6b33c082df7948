#pragma once

#include <chrono>
#include <optional>

namespace tollivar::capture {

/// How far the watch over a page has come.
struct WatchProgress {
    using TimePoint = std::chrono::steady_clock::time_point;

    TimePoint begun;                     ///< the page was asked for
    std::optional<TimePoint> answered{}; ///< the server answered with the page
    std::optional<TimePoint> loaded{};   ///< everything that it named has come
    TimePoint lastTraffic;               ///< a request was made or answered
    std::optional<TimePoint> found{};    ///< the first medium that a person may have come for
    std::optional<TimePoint> changed{};  ///< what is known of the media changed
    bool isTitleKnown = false;
    bool isBusy = false; ///< a request still waits for its end
};

/// True when nothing more is worth waiting for.
///
/// Pure; the moments behind it are in the source.
[[nodiscard]] bool isFinished(const WatchProgress &progress, WatchProgress::TimePoint now);

} // namespace tollivar::capture
