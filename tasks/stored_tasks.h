#pragma once

#include "platform/result.h"
#include "tasks/api/task_info.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace tollivar::tasks {

/// Identity of a stored task; 0 before its first insert.
using RowId = std::int64_t;

/// A task as the database holds it.
struct StoredTask {
    RowId row = 0;
    TaskInfo task;
};

/// All stored tasks in row order, read while another process may be writing them: the database is
/// opened for reading only, neither changed nor locked against its owner.
///
/// Errors: a database that does not exist yet, or has no tasks table, holds no tasks; AskUser when
///         it cannot be read.
[[nodiscard]] platform::Result<std::vector<StoredTask>>
readStoredTasks(const QString &databasePath);

} // namespace tollivar::tasks
