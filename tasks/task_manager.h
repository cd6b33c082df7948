#pragma once

#include "platform/message_port.h"
#include "tasks/api/task_worker.h"
#include "tasks/retry_policy.h"
#include "tasks/row_order.h"
#include "tasks/slot_queue.h"
#include "tasks/task_database.h"
#include "tasks/task_transitions.h"

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <vector>

namespace tollivar::platform {
class WorkerThread;
}

namespace tollivar::tasks {

/// Which tasks the list shows. None is the state before the first choice.
enum class TaskFilter : std::uint32_t { None = 0, All = 1, Downloaded = 2, Downloading = 3 };

/// Whether a task is stored by being added, or comes from the store.
enum class TaskOrigin { New, Stored };

/// Where a task that is started stands afterwards.
enum class Placement { Keep, MoveToEnd };

/// What starting a task led to.
enum class StartOutcome : int { NotStarted = 0, Queued = 2, Started = 3, WillRestart = 11 };

/// What stopping a task led to.
enum class StopOutcome : int { Nothing = 0, Stopped = 9, Asked = 10 };

/// Whether a task's file goes with it.
enum class FileOnRemoval { Keep, Delete };

/// Whether the caller has to do more about an event.
enum class EventOutcome : int { Ignore = 0, FollowUp = 1 };

struct TaskManagerOptions {
    int maximumDownloads = 5; ///< tasks that run at once
    RetryPolicy retry{};
    int browserVersion = -1; ///< given to every worker
};

/// Owns every task of the session and decides which run, wait, run again, and what a finished,
/// stopped or removed one becomes. Driven by the person's commands and the workers' events alone;
/// it has no thread and no timer. Each event that ends a run frees a slot, and the slot goes to at
/// most one waiting task.
///
/// A row is a position among the shown tasks; an operation on a row that is not there does
/// nothing. An id belongs to one task of the session for good; moving a task to the end gives it a
/// new one.
///
/// Threads: the main thread. Workers run on threads of their own and are reached through their
///          locked accessors.
/// Owns:    the tasks, their workers and threads; borrows the database, which must outlive it.
///          The destructor shuts down.
class TaskManager {
public:
    TaskManager(TaskDatabase &database, TaskWorkerFactory factory, platform::AppMessagePort events,
                const TaskManagerOptions &options);
    ~TaskManager();
    TaskManager(const TaskManager &) = delete;
    TaskManager &operator=(const TaskManager &) = delete;

    /// Adds a task, storing a new one; `row` is the stored one's. Returns its id. A completed task
    /// is shown at once only among the downloaded ones.
    std::uint32_t addTask(const TaskInfo &record, TaskOrigin origin, RowId row = 0);

    void setFilter(TaskFilter filter);
    [[nodiscard]] TaskFilter filter() const { return m_filter; }
    /// Sorts the shown tasks once; later ones are added at the end, and another filter brings the
    /// order of the ids back.
    void sort(SortColumn column, SortDirection direction);
    StartOutcome startTask(int row, Placement placement);
    StopOutcome stopTask(int row);
    /// An idle task goes with its database row and, if asked, its file; of a running one only the
    /// partly written file goes, when its run has stopped.
    void removeTask(int row, FileOnRemoval file);
    /// The same for many rows at once, given in rising order; one transaction.
    void removeTasks(const std::vector<int> &rows, FileOnRemoval file);

    /// Takes one task event; see task_event.h for its two values.
    EventOutcome onTaskEvent(std::uint64_t first, std::uint64_t second);

    /// Gives one waiting task a slot if there is one now; the others follow as runs end.
    void setMaximumDownloads(int maximum);
    /// Counts from the next failure on.
    void setMaximumRetries(int retries);

    /// Lets go of threads that have ended.
    void reapEndedThreads();

    /// Stops every run and waits, at most 7 s for every 64 of them.
    void shutDown();

    /// Null when there is no such row or id; valid until the task is removed.
    [[nodiscard]] TaskWorker *workerAt(int row) const;
    [[nodiscard]] TaskWorker *worker(std::uint32_t id) const;
    /// -1 when the task is not shown.
    [[nodiscard]] int rowOf(std::uint32_t id) const;
    /// Its identity in the database; 0 for an unknown id.
    [[nodiscard]] RowId storedRowOf(std::uint32_t id) const;
    [[nodiscard]] int visibleCount() const;
    [[nodiscard]] int completedCount() const { return m_completedCount; }
    /// The tasks that are not completed.
    [[nodiscard]] int unfinishedCount() const;
    [[nodiscard]] int runningCount() const { return m_slots.running(); }
    [[nodiscard]] int waitingCount() const;
    /// Of all runs together, in bytes per second.
    [[nodiscard]] double totalSpeed() const;
    /// The ids of all tasks, in order.
    [[nodiscard]] std::vector<std::uint32_t> allTasks() const;

    /// An unknown id is ignored.
    void updateText(std::uint32_t id, TextColumn column, const QString &value);
    void updateNumber(std::uint32_t id, NumberColumn column, std::int32_t value,
                      Durability durability = Durability::Durable);

    /// Called when the shown rows are others than before.
    void onRowsChanged(std::function<void()> handler);

private:
    struct Task {
        std::shared_ptr<TaskWorker> worker;
        RowId storedRow = 0;
        int row = -1;        ///< -1 when not shown
        int threadCount = 0; ///< threads that were started for it and not yet reaped
    };
    struct Run {
        std::unique_ptr<platform::WorkerThread> thread;
        std::shared_ptr<Task> task;
    };

    [[nodiscard]] std::shared_ptr<Task> find(std::uint32_t id) const;
    [[nodiscard]] std::shared_ptr<Task> findAt(int row) const;
    [[nodiscard]] bool isShown(const Task &task) const;
    /// Takes a task out of the session, and an idle one out of the store; its row stays.
    void discard(Task &task, FileOnRemoval file);
    void renumberRows();
    void show(const std::shared_ptr<Task> &task);
    void hide(Task &task);
    void moveToEnd(const std::shared_ptr<Task> &task);
    void reopenCompleted(const Task &task);
    void launch(const std::shared_ptr<Task> &task);
    void applyEnd(const std::shared_ptr<Task> &task, TaskEventCode code);
    void complete(const std::shared_ptr<Task> &task);
    void retry(const std::shared_ptr<Task> &task, int attempt);
    void dispatch();

    TaskDatabase &m_database;
    TaskWorkerFactory m_factory;
    platform::AppMessagePort m_events;
    TaskManagerOptions m_options;
    TaskFilter m_filter = TaskFilter::None;
    int m_completedCount = 0;
    std::uint32_t m_nextId = 0;
    std::map<std::uint32_t, std::shared_ptr<Task>> m_tasks;
    std::vector<std::shared_ptr<Task>> m_rows;
    std::list<Run> m_runs;
    SlotQueue m_slots;
    std::function<void()> m_rowsChanged;
};

} // namespace tollivar::tasks
