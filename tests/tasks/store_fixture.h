#pragma once

#include "tasks/stored_tasks.h"
#include "tasks/task_database.h"
#include "tests/support/sandbox.h"

#include <QStringList>

#include <memory>
#include <vector>

namespace tollivar::test {

/// A task whose every stored field differs from its default and from every other field.
[[nodiscard]] tasks::TaskInfo fullTask();

/// A record as it comes back from storage: without what is not stored.
[[nodiscard]] tasks::TaskInfo asStored(tasks::TaskInfo task);

/// A scratch data directory with a task database in it, and everything the person was told.
class TaskStore {
public:
    [[nodiscard]] QString path() const { return m_sandbox.file(QStringLiteral("dtasks.db")); }
    [[nodiscard]] QString oldListPath() const
    {
        return m_sandbox.file(QStringLiteral("dtasks.ini"));
    }
    [[nodiscard]] const Sandbox &sandbox() const { return m_sandbox; }

    /// Opens the database; null when that fails, with the reason in openError().
    [[nodiscard]] std::unique_ptr<tasks::TaskDatabase> open();
    [[nodiscard]] const platform::Error &openError() const { return m_openError; }

    /// All rows as LoadTasks hands them over.
    [[nodiscard]] static std::vector<tasks::StoredTask> load(tasks::TaskDatabase &database);

    /// Runs statements on the file beside the program's own code.
    void runSql(const QString &sql) const;
    [[nodiscard]] QString scalar(const QString &sql) const;

    /// What went to the person so far.
    [[nodiscard]] const QStringList &messages() const { return m_messages; }
    void forgetMessages() { m_messages.clear(); }

    /// Names of the databases that were set aside as damaged.
    [[nodiscard]] QStringList filesSetAside() const;

private:
    Sandbox m_sandbox;
    QStringList m_messages;
    platform::Error m_openError;
};

} // namespace tollivar::test
