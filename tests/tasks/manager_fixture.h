#pragma once

#include "tasks/stored_tasks.h"
#include "tasks/task_manager.h"
#include "tasks/task_recorder.h"
#include "tests/support/manual_clock.h"
#include "tests/support/sandbox.h"
#include "tests/support/scripted_worker.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>

namespace tollivar::tasks {

/// A manager on a real database, with scripted workers and a clock that stands still.
class ManagerTest : public ::testing::Test {
protected:
    ManagerTest();

    /// Makes the manager; filter "all".
    void begin(const TaskManagerOptions &options = {});
    std::uint32_t add(const QString &address = QStringLiteral("http://a/"));
    std::uint32_t addCompleted();
    StartOutcome start(std::uint32_t id, Placement placement = Placement::Keep);
    StopOutcome stop(std::uint32_t id);
    /// Ends the task's run and waits until the manager has heard of it.
    void end(std::uint32_t id, TaskEventCode code);
    /// Waits until that many ending events have reached the manager.
    void waitForEnds(std::size_t count);
    [[nodiscard]] TaskState state(std::uint32_t id) const;
    [[nodiscard]] test::ScriptedWorker &worker(std::uint32_t id) const;
    [[nodiscard]] std::vector<std::uint32_t> shown() const;
    [[nodiscard]] std::vector<StoredTask> stored() const;

    test::Sandbox m_sandbox;
    test::ManualClock m_clock;
    std::unique_ptr<TaskDatabase> m_database;
    std::unique_ptr<platform::AppMessageInbox> m_inbox;
    std::unique_ptr<TaskManager> m_manager;
    std::unique_ptr<TaskRecorder> m_recorder;
    std::vector<EventOutcome> m_outcomes;
    /// Every worker that was made, in order; the manager owns them.
    std::vector<std::weak_ptr<test::ScriptedWorker>> m_made;
    /// The task of each ending event that has reached the manager.
    std::vector<std::uint32_t> m_endedTasks;
};

} // namespace tollivar::tasks
