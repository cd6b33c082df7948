#include "ui/main_window/task_commands.h"

#include <numeric>
#include <optional>
#include <utility>

namespace tollivar::ui {

using tasks::Placement;
using tasks::StartOutcome;
using tasks::StopOutcome;
using tasks::TaskFilter;
using tasks::TaskState;

TaskCommands::TaskCommands(tasks::TaskManager &manager, TaskRows &rows,
                           StopConversion stopConversion)
    : m_manager(manager)
    , m_rows(rows)
    , m_stopConversion(std::move(stopConversion))
{
}

void TaskCommands::stopConversion(int row) const
{
    if (m_stopConversion && isCompleted(row)) {
        m_stopConversion(m_manager.workerAt(row)->taskId());
    }
}

bool TaskCommands::isCompleted(int row) const
{
    const tasks::TaskWorker *worker = m_manager.workerAt(row);
    return worker != nullptr && worker->state() == TaskState::Completed;
}

std::optional<std::vector<int>>
TaskCommands::rowsToStart(const std::function<Answer()> &askForCompleted) const
{
    std::optional<Answer> answer;
    std::vector<int> rows;
    for (const int row : m_rows.selectedRows()) {
        const bool completed = isCompleted(row);
        if (completed && !answer) {
            answer = askForCompleted();
        }
        if (answer == Answer::Cancel) {
            return std::nullopt;
        }
        if (!completed || answer == Answer::Yes) {
            rows.push_back(row);
        }
    }
    return rows;
}

bool TaskCommands::startSelected(const std::function<Answer()> &askForCompleted)
{
    const auto rows = rowsToStart(askForCompleted);
    if (!rows) {
        return false;
    }
    const bool showsDownloaded = m_manager.filter() == TaskFilter::Downloaded;
    int restarted = 0;
    for (const int row : *rows) {
        // Each restarted task leaves the downloaded ones, and the rows behind it move up.
        const int place = showsDownloaded ? row - restarted : row;
        const bool leaves = showsDownloaded && isCompleted(place);
        // What is being read is about to be downloaded anew.
        stopConversion(place);
        const auto outcome =
            m_manager.startTask(place, leaves ? Placement::MoveToEnd : Placement::Keep);
        restarted += leaves ? 1 : 0;
        if (outcome == StartOutcome::Queued || outcome == StartOutcome::WillRestart) {
            m_rows.redrawRow(place);
        }
    }
    if (!showsDownloaded) {
        return false;
    }
    m_manager.setFilter(TaskFilter::Downloading);
    m_rows.refreshRows();
    std::vector<int> last(static_cast<std::size_t>(restarted));
    std::iota(last.begin(), last.end(), m_manager.visibleCount() - restarted);
    m_rows.selectRows(last);
    return true;
}

void TaskCommands::stopSelected()
{
    for (const int row : m_rows.selectedRows()) {
        stopConversion(row);
        if (m_manager.stopTask(row) != StopOutcome::Nothing) {
            m_rows.redrawRow(row);
        }
    }
}

void TaskCommands::removeSelected(tasks::FileOnRemoval files)
{
    removeRows(m_rows.selectedRows(), files);
}

void TaskCommands::clearCompleted()
{
    m_manager.setFilter(TaskFilter::Downloaded);
    std::vector<int> rows;
    for (int row = 0; row < m_manager.visibleCount(); ++row) {
        if (isCompleted(row)) {
            rows.push_back(row);
        }
    }
    removeRows(rows, tasks::FileOnRemoval::Keep);
}

void TaskCommands::removeRows(const std::vector<int> &rows, tasks::FileOnRemoval files)
{
    // Nobody could stop them once the rows are gone.
    for (const int row : rows) {
        stopConversion(row);
    }
    m_manager.removeTasks(rows, files);
    m_manager.reapEndedThreads();
    m_rows.refreshRows();
}

} // namespace tollivar::ui
