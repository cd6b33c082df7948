#pragma once

#include <cstdint>

namespace tollivar::tasks {

/// `TaskProgress::secondsLeft` while it cannot be told.
inline constexpr std::int32_t kUnknownSecondsLeft = -1;

/// How far a running download got; written by the download loop, copied out by the list.
struct TaskProgress {
    float percentHundredths = 0; ///< 10,000 is the whole
    double bytesPerSecond = 0;
    std::int32_t secondsLeft = kUnknownSecondsLeft;
    std::uint32_t bytesDownloaded = 0; ///< saturates

    bool operator==(const TaskProgress &) const = default;
};

} // namespace tollivar::tasks
