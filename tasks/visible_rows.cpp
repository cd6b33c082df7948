#include "tasks/visible_rows.h"

namespace tollivar::tasks {

void VisibleRows::append(const std::shared_ptr<ManagedTask> &task)
{
    task->row = count();
    m_tasks.push_back(task);
}

void VisibleRows::remove(ManagedTask &task)
{
    if (task.row < 0) {
        return;
    }
    const auto row = static_cast<std::size_t>(task.row);
    task.row = -1;
    m_tasks.erase(m_tasks.begin() + static_cast<std::ptrdiff_t>(row));
    renumberFrom(row);
}

void VisibleRows::remove(std::span<const std::shared_ptr<ManagedTask>> tasks)
{
    for (const auto &task : tasks) {
        task->row = -1;
    }
    std::erase_if(m_tasks, [](const auto &task) { return task->row < 0; });
    renumberFrom(0);
}

void VisibleRows::clear()
{
    for (const auto &task : m_tasks) {
        task->row = -1;
    }
    m_tasks.clear();
    m_order = {};
}

void VisibleRows::sort(TaskOrder order)
{
    m_order = order;
    sortTasks(m_tasks, order);
    renumberFrom(0);
}

std::shared_ptr<ManagedTask> VisibleRows::at(int row) const
{
    return row >= 0 && row < count() ? m_tasks[static_cast<std::size_t>(row)] : nullptr;
}

void VisibleRows::renumberFrom(std::size_t first)
{
    for (std::size_t row = first; row < m_tasks.size(); ++row) {
        m_tasks[row]->row = static_cast<int>(row);
    }
}

} // namespace tollivar::tasks
