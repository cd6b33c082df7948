#pragma once

#include "tasks/managed_task.h"
#include "tasks/row_order.h"

#include <memory>
#include <span>
#include <vector>

namespace tollivar::tasks {

/// The tasks that the list shows, in its order. Finds the task of a row and, by
/// ManagedTask::row, the row of a task in constant time.
///
/// Owns: a share of each shown task.
class VisibleRows {
public:
    void append(const std::shared_ptr<ManagedTask> &task);
    /// A task that is not shown is left alone. Takes time with the rows behind it.
    void remove(ManagedTask &task);
    /// Removes any number of tasks in one pass over the rows.
    void remove(std::span<const std::shared_ptr<ManagedTask>> tasks);
    void clear();
    /// Sorts once; what is appended later stays at the end.
    void sort(TaskOrder order);
    /// The order of the latest sort; None since the rows were cleared.
    [[nodiscard]] TaskOrder order() const { return m_order; }

    /// Null when there is no such row.
    [[nodiscard]] std::shared_ptr<ManagedTask> at(int row) const;
    [[nodiscard]] int count() const { return static_cast<int>(m_tasks.size()); }

private:
    void renumberFrom(std::size_t first);

    std::vector<std::shared_ptr<ManagedTask>> m_tasks;
    TaskOrder m_order;
};

} // namespace tollivar::tasks
