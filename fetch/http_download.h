#pragma once

#include "fetch/step_result.h"
#include "platform/clock.h"
#include "tasks/api/task_worker.h"

namespace tollivar::fetch {

/// Downloads the record's media address over HTTP into its file; every run begins at the first
/// byte. A body that ends early counts as finished.
///
/// `task` is the run's copy of the record; the worker's own copy follows it. Posts SizeKnown,
/// FileCreated, RecordChanged and progress; the caller posts how it ended.
///
/// Threads: the worker's; a stop ends it within milliseconds, and the file keeps what came.
/// Errors:  Failed, with the worker's failure set; Stopped.
[[nodiscard]] StepResult downloadHttp(tasks::TaskWorker &worker, tasks::TaskInfo &task,
                                      const platform::Clock &clock);

} // namespace tollivar::fetch
