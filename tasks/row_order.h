#pragma once

#include "tasks/managed_task.h"

#include <memory>
#include <vector>

namespace tollivar::tasks {

/// What the shown tasks can be sorted by, by the number of the list's column.
enum class SortColumn : int { Number = 0, Name = 1, Status = 2, Speed = 3, Type = 4, Mode = 5 };

enum class SortDirection : int { None = 0, Descending = 1, Ascending = 2 };

struct TaskOrder {
    SortColumn column = SortColumn::Number;
    SortDirection direction = SortDirection::None;

    bool operator==(const TaskOrder &) const = default;
};

/// Sorts tasks as their worker's record and state are now; equal ones keep their places, and None
/// keeps all. Names and types go by the rules of the person's language, numbers within them by
/// value; statuses from downloading over waiting, failed and stopped to completed. The values are
/// read once each, so workers may change them meanwhile.
void sortTasks(std::vector<std::shared_ptr<ManagedTask>> &tasks, TaskOrder order);

} // namespace tollivar::tasks
