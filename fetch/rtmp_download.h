#pragma once

#include "fetch/rtmp_session.h"
#include "fetch/step_result.h"
#include "platform/clock.h"
#include "tasks/api/task_worker.h"

namespace tollivar::fetch {

/// Plays the record's stream into its file, from its start. A stream that ends early counts as
/// finished.
///
/// `task` is the run's copy of the record; the worker's own copy follows it. Posts FileCreated,
/// RecordChanged, SizeKnown with a projected size, and progress; the caller posts how it ended.
///
/// Threads: the worker's; a stop ends it within milliseconds, and the file keeps what came.
/// Errors:  Failed, with the worker's failure set when it has a reason of its own; Stopped.
[[nodiscard]] StepResult downloadRtmp(tasks::TaskWorker &worker, tasks::TaskInfo &task,
                                      const platform::Clock &clock,
                                      std::chrono::seconds timeLimit = kStreamTimeLimit);

/// How far a stream is, from what has come.
struct RtmpProgress {
    double percent = 0; ///< whole tenths
    /// The whole time that the download will have taken, in seconds; unknown at 0 percent.
    std::int32_t wholeSeconds = tasks::kUnknownSecondsLeft;
    /// What the whole will have in bytes; unknown at 0 percent, saturating.
    std::uint32_t projectedSize = tasks::kUnknownSize;
};

/// `duration` in seconds, 0 when unknown; `timestamp` and `elapsed` in milliseconds.
[[nodiscard]] RtmpProgress rtmpProgress(double duration, std::uint32_t timestamp,
                                        std::uint64_t bytes, std::chrono::milliseconds elapsed);

} // namespace tollivar::fetch
