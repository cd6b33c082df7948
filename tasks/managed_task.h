#pragma once

#include "tasks/stored_tasks.h"

#include <memory>

namespace tollivar::platform {
class WorkerThread;
}

namespace tollivar::tasks {

class TaskWorker;

/// What the manager knows of one of its tasks, beside the worker's record and state.
struct ManagedTask {
    std::shared_ptr<TaskWorker> worker;
    RowId storedRow = 0;
    int row = -1;        ///< kept by VisibleRows; -1 when not shown
    int threadCount = 0; ///< threads that were started for it and not yet reaped
    /// The thread of the latest run; compared with others, never followed.
    const platform::WorkerThread *latestThread = nullptr;
};

} // namespace tollivar::tasks
