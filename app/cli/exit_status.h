#pragma once

namespace tollivar::app {

/// Exit statuses of the terminal front end. Scripts rely on them: never change.
inline constexpr int kAllCompleted = 0;
inline constexpr int kTaskFailed = 1;
inline constexpr int kBadUsage = 2;
inline constexpr int kInterrupted = 3;
inline constexpr int kDataUnusable = 4;

} // namespace tollivar::app
