#pragma once

namespace tollivar::app {

/// Exit statuses of the terminal front end. Scripts rely on them: never renumber.
enum ExitStatus : int {
    kAllCompleted = 0,
    kTaskFailed = 1,
    kBadUsage = 2,
    kInterrupted = 3,
    kDataUnusable = 4,
};

} // namespace tollivar::app
