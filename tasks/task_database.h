#pragma once

#include "platform/result.h"
#include "tasks/api/task_info.h"
#include "tasks/stored_tasks.h"
#include "tasks/task_columns.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>

namespace tollivar::tasks {

/// Whether a write must survive a power cut when the call returns.
enum class Durability {
    Durable,
    Progress, ///< may be lost by a power cut, never by the end of the process
};

/// Shows a message to the person.
using Notifier = std::function<void(const QString &message)>;

/// The stored tasks: one connection to "dtasks.db".
///
/// Threads: made, used and destroyed on the main thread.
/// Owns:    the connection and the lock file "dtasks.lock" beside the database, so that one process
///          at a time writes it.
/// Errors:  after a successful open, a failed operation tells the notifier the database's message
///          and returns normally; nothing is retried.
class TaskDatabase {
public:
    /// Opens or creates the database; carries the tasks of `legacyListPath` ("dtasks.ini") over when
    /// there was no database yet. A database that cannot be read is set aside under a dated name,
    /// the person is told, and a new one is begun.
    ///
    /// Errors: TryAgain when another process holds the database; AskUser when the place cannot be
    ///         read or written.
    [[nodiscard]] static platform::Result<std::unique_ptr<TaskDatabase>>
    open(const QString &databasePath, const QString &legacyListPath, Notifier notifier);

    ~TaskDatabase();
    TaskDatabase(const TaskDatabase &) = delete;
    TaskDatabase &operator=(const TaskDatabase &) = delete;

    /// Makes the table and migrates an older one. Part of open(), LoadTasks and DeleteTask.
    void EnsureSchema();

    /// Hands every stored task over in row order.
    void LoadTasks(const std::function<void(RowId, TaskInfo &&)> &receive);

    /// The new task's row id; 0 when the insert failed.
    [[nodiscard]] RowId InsertTask(const TaskInfo &task);

    void UpdateText(RowId row, TextColumn column, const QString &value);
    /// Unsigned 32-bit values are passed in their signed form, kUnknownSize as -1.
    void UpdateInt(RowId row, NumberColumn column, std::int32_t value,
                   Durability durability = Durability::Durable);

    /// A row that does not exist is no error.
    void DeleteTask(RowId row);

    /// Runs `work` as one transaction: for bulk inserts and removals. May be nested. A failure that
    /// ends the transaction undoes all of it, the rows it inserted included; each message is told
    /// once.
    void inTransaction(const std::function<void()> &work);

private:
    struct Private;
    explicit TaskDatabase(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};

} // namespace tollivar::tasks
