#pragma once

#include "tasks/task_manager.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace tollivar::ui {

/// An answer to a question of a command.
enum class Answer { Yes, No, Cancel };

/// The rows of the task list that commands work on: which are chosen, and what has to be drawn anew.
///
/// Threads: the main thread.
class TaskRows {
public:
    TaskRows() = default;
    virtual ~TaskRows() = default;
    TaskRows(const TaskRows &) = delete;
    TaskRows &operator=(const TaskRows &) = delete;

    /// In rising order.
    [[nodiscard]] virtual std::vector<int> selectedRows() const = 0;
    /// Chooses these rows and brings them into view.
    virtual void selectRows(const std::vector<int> &rows) = 0;
    virtual void redrawRow(int row) = 0;
    /// The rows are others than before.
    virtual void refreshRows() = 0;
};

/// What the buttons of the main window do to tasks.
///
/// Threads: the main thread.
/// Owns:    nothing; manager and rows must outlive it.
class TaskCommands {
public:
    /// Ends the conversion of a finished task's file, if there is one.
    using StopConversion = std::function<void(std::uint32_t taskId)>;

    TaskCommands(tasks::TaskManager &manager, TaskRows &rows, StopConversion stopConversion);

    /// Starts the selected tasks. Asks once, at the first completed one, whether these start again;
    /// Cancel starts nothing at all. From the downloaded tasks the view goes to those being
    /// downloaded, also when none starts; the restarted ones are selected there. True when the
    /// filter has changed.
    bool startSelected(const std::function<Answer()> &askForCompleted);
    /// Their conversions too.
    void stopSelected();
    /// Removes the selected tasks.
    void removeSelected(tasks::FileOnRemoval files);
    /// Shows the downloaded tasks and removes them, without their files.
    void clearCompleted();

private:
    [[nodiscard]] bool isCompleted(int row) const;
    /// The rows that starting the selected tasks means; nothing when the question was cancelled.
    [[nodiscard]] std::optional<std::vector<int>>
    rowsToStart(const std::function<Answer()> &askForCompleted) const;
    void stopConversion(int row) const;
    void removeRows(const std::vector<int> &rows, tasks::FileOnRemoval files);

    tasks::TaskManager &m_manager;
    TaskRows &m_rows;
    StopConversion m_stopConversion;
};

} // namespace tollivar::ui
