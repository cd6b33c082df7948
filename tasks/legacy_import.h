#pragma once

#include "tasks/api/task_info.h"

#include <QHash>
#include <QString>
#include <QStringView>

#include <optional>
#include <vector>

namespace tollivar::tasks {

/// The task list of releases before the database, "dtasks.ini"; see docs/formats/old-list.md.

/// One task from its two lines: 28 numbers, and all texts joined, which the numbers cut apart.
/// None when there are fewer numbers. Lengths that run past the end, or are negative, are clipped.
[[nodiscard]] std::optional<TaskInfo> parseOldTask(QStringView lengths, QStringView texts);

/// The tasks below `count` of the list's section, keys in lower case, in the order of their
/// numbers. Tasks without a readable line of numbers are left out.
[[nodiscard]] std::vector<TaskInfo> parseOldTasks(int count, const QHash<QString, QString> &lines);

/// The tasks of the file; none when it does not exist.
[[nodiscard]] std::vector<TaskInfo> readOldList(const QString &path);

/// Completion status of a record from before it was stored: 1 when the file was made and all of
/// it is there. An unknown size is never reached.
[[nodiscard]] int olderCompletedStatus(const TaskInfo &task);

} // namespace tollivar::tasks
