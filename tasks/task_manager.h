#pragma once

#include "platform/message_port.h"
#include "tasks/api/task_worker.h"
#include "tasks/retry_policy.h"
#include "tasks/slot_queue.h"
#include "tasks/task_database.h"
#include "tasks/task_transitions.h"
#include "tasks/visible_rows.h"

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <vector>

namespace tollivar::tasks {

/// Which tasks the list shows. None is the state before the first choice.
enum class TaskFilter : std::uint32_t { None = 0, All = 1, Downloaded = 2, Downloading = 3 };

/// Whether a task is stored by being added, or comes from the store.
enum class TaskOrigin { New, Stored };

/// Where a task that is started stands afterwards. Only one that rests is moved: what a run has
/// told under the old id would reach nobody.
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

    /// Shows the tasks of another filter, in the order of their ids. The same one changes nothing.
    void setFilter(TaskFilter filter);
    [[nodiscard]] TaskFilter filter() const { return m_filter; }
    /// Sorts the shown tasks once: those that are shown later stand at the end.
    void sort(SortColumn column, SortDirection direction);
    /// How the shown tasks were sorted last; direction None since a filter was chosen.
    [[nodiscard]] TaskOrder order() const { return m_rows.order(); }
    StartOutcome startTask(int row, Placement placement);
    /// The same for a task that need not be shown; an unknown id is not started.
    StartOutcome start(std::uint32_t id);
    StopOutcome stopTask(int row);
    /// An idle task goes with its database row and, if asked, its file; of a running one only the
    /// partly written file goes, when its run has stopped.
    void removeTask(int row, FileOnRemoval file);
    /// The same for many tasks, in one transaction; the rows are those before the call.
    void removeTasks(const std::vector<int> &rows, FileOnRemoval file);

    /// Takes one task event; see task_event.h for its two values.
    EventOutcome onTaskEvent(std::uint64_t first, std::uint64_t second);

    /// Gives one waiting task a slot if there is one now; the others follow as runs end.
    void setMaximumDownloads(int maximum);
    /// Counts from the next failure on.
    void setRetryPolicy(const RetryPolicy &policy);

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
    /// Tasks that are not completed, whatever they do.
    [[nodiscard]] int unfinishedCount() const;
    /// Tasks that wait for a slot.
    [[nodiscard]] int waitingCount() const { return m_waitingCount; }
    [[nodiscard]] int runningCount() const { return m_slots.running(); }
    /// Of all downloads together, in bytes per second; takes time with the running tasks only.
    [[nodiscard]] double totalSpeed() const;
    /// What the downloads have reached, each from 0 to 1, added up; as quick as totalSpeed().
    [[nodiscard]] double totalReached() const;
    /// False when there is no such row.
    [[nodiscard]] bool isCompletedAt(int row) const;
    /// The ids of all tasks, in order.
    [[nodiscard]] std::vector<std::uint32_t> allTasks() const;

    /// An unknown id is ignored.
    void updateText(std::uint32_t id, TextColumn column, const QString &value);
    void updateNumber(std::uint32_t id, NumberColumn column, std::int32_t value,
                      Durability durability = Durability::Durable);

    /// Called when the shown rows are others than before, or stand in another order; once for each
    /// command, however many rows it changed.
    void onRowsChanged(std::function<void()> handler);

private:
    using Task = ManagedTask;
    struct Run {
        std::unique_ptr<platform::WorkerThread> thread;
        std::shared_ptr<Task> task;
    };

    [[nodiscard]] std::shared_ptr<Task> find(std::uint32_t id) const;
    [[nodiscard]] std::shared_ptr<Task> findAt(int row) const;
    [[nodiscard]] bool isShown(const Task &task) const;
    /// Of all tasks that download now, each once.
    [[nodiscard]] std::vector<TaskProgress> downloads() const;
    void rowsChanged() const;
    void setState(TaskWorker &worker, TaskState state);
    void takeOut(Task &task, FileOnRemoval file);
    StartOutcome startTask(const std::shared_ptr<Task> &task, Placement placement);
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
    int m_waitingCount = 0;
    std::uint32_t m_nextId = 0;
    std::map<std::uint32_t, std::shared_ptr<Task>> m_tasks;
    VisibleRows m_rows;
    std::list<Run> m_runs;
    SlotQueue m_slots;
    std::function<void()> m_rowsChanged;
};

} // namespace tollivar::tasks
