#pragma once

namespace tollivar::fetch {

/// How one step of a run ended.
enum class StepResult {
    ParseFailed = 5,
    Failed = 6,
    Stopped = 9,
    Done = 10,
};

} // namespace tollivar::fetch
