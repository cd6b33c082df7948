#pragma once

#include "tasks/api/task_info.h"
#include "tasks/api/task_progress.h"
#include "tasks/api/task_state.h"
#include "tasks/task_database.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace tollivar::app {

/// What a script hears of a task.
enum class ReportKind {
    Added,
    Resolving,
    Title,
    Downloading,
    Progress,
    Converting,
    Retry,
    Completed,
    Failed,
    Stopped,
};

/// One event of one task; what is empty is left out of the text, except the size.
struct TaskReport {
    ReportKind kind = ReportKind::Added;
    tasks::RowId row = 0;
    tasks::TaskInfo task{};
    std::optional<tasks::TaskProgress> progress{};
    QString reason{};
    std::optional<int> convertedPercent{}; ///< 0 to 99, while the file is converted
    QString path{};                        ///< of the converted file; else the record's counts
};

/// Where the finished file is.
[[nodiscard]] QString finishedPath(const TaskReport &report);

/// The report as one JSON object without a line end: "event", "rowid", "address", "name", "path"
/// once the file was created, "size" (null when unknown), and, with progress, "downloaded" (bytes),
/// "speed" (bytes per second), "secondsLeft" and "percent" (0 to 100). A file that no task stands
/// for has neither "rowid" nor "address".
[[nodiscard]] QByteArray reportJson(const TaskReport &report);

/// A stored task as a JSON object's text: the columns' names, "rowid" and "state".
[[nodiscard]] QByteArray storedTaskJson(tasks::RowId row, const tasks::TaskInfo &task);

/// What a stored task is while no program runs it: "completed", "stopped" or "new".
[[nodiscard]] QString storedState(const tasks::TaskInfo &task);

} // namespace tollivar::app
