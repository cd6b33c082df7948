#pragma once

#include "tasks/api/task_progress.h"

#include <chrono>
#include <cstdint>

namespace tollivar::fetch {

/// Part of the whole in hundredths of a percent, 10,000 being all of it; 10,000 for an empty whole.
[[nodiscard]] float percentHundredths(std::uint64_t done, std::uint64_t whole);

/// Bytes per second since the start, which counts in whole seconds; 0 within the first one.
[[nodiscard]] double averageSpeed(std::uint64_t done, std::chrono::milliseconds elapsed);

/// Seconds until the whole is there, rounded to the nearest; unknown without a speed.
[[nodiscard]] std::int32_t secondsLeft(std::uint64_t done, std::uint64_t whole,
                                       double bytesPerSecond);

} // namespace tollivar::fetch
