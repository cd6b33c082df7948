#pragma once

#include "tasks/api/task_state.h"
#include "tasks/api/task_worker.h"

#include <QString>

namespace tollivar::tasks {

/// Where a run failed: "Parsing Failed" while resolving the page, else "Downloading Failed".
[[nodiscard]] QString failureText(TaskState failedStage);

/// Why it failed, to stand behind failureText() or below it; empty when there is nothing to say.
[[nodiscard]] QString failureReason(const TaskFailure &failure);

} // namespace tollivar::tasks
