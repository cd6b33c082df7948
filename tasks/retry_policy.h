#pragma once

#include "tasks/api/task_info.h"

namespace tollivar::tasks {

/// When a failed task runs again.
struct RetryPolicy {
    /// Runs after the first one; 0 for none.
    int maximumRetries = 1;
    /// If true, a task whose address was given directly is looked up like a page from its second
    /// retry on.
    bool switchesMode = true;

    /// `attempt` is 1 after the first failure.
    [[nodiscard]] bool runsAgain(int attempt) const { return attempt <= maximumRetries; }

    /// The method code with which the retry runs: another one than the record's only for a direct
    /// file, which becomes a flash file by its ending, else a video.
    [[nodiscard]] int methodOfRetry(const TaskInfo &task, int attempt) const;
};

} // namespace tollivar::tasks
