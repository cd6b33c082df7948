#pragma once

#include "tasks/api/task_worker.h"

#include <cstdint>
#include <vector>

namespace tollivar::tasks {

/// What the shown tasks can be sorted by; the columns of the list.
enum class SortColumn : int { Number = 0, Name, Status, Speed, Type, Mode };

/// Descending is what a second click on a column asks for.
enum class SortDirection : int { None = 0, Descending = 1, Ascending = 2 };

/// What one task is sorted by. Of a column only one field counts.
struct RowKey {
    QString text{};
    double number = 0;
};

[[nodiscard]] RowKey rowKey(const TaskWorker &worker, SortColumn column);

/// The old places in their new order. Equal keys keep their order in both directions; names are
/// compared as people read them, without regard to case.
[[nodiscard]] std::vector<std::size_t> sortedPlaces(const std::vector<RowKey> &keys,
                                                    SortColumn column, SortDirection direction);

} // namespace tollivar::tasks
