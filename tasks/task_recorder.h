#pragma once

#include "platform/clock.h"
#include "tasks/task_manager.h"

#include <chrono>
#include <cstdint>
#include <map>

namespace tollivar::tasks {

/// Stores what a task event changes and what must outlive the session. Progress is stored at most
/// once for each task and second; everything else at once.
///
/// Threads: the main thread.
/// Owns:    nothing; the manager, the database and the clock are borrowed and must outlive it.
class TaskRecorder {
public:
    TaskRecorder(TaskManager &manager, TaskDatabase &database, const platform::Clock &clock);

    /// Takes an event that the manager wants followed up; see task_event.h for its two values.
    void record(std::uint64_t first, std::uint64_t second);

private:
    void recordProgress(std::uint32_t id, std::int32_t bytes, const TaskInfo &record);
    void recordCompletion(std::uint32_t id, const TaskInfo &record);
    void recordAnswer(std::uint32_t id, const TaskInfo &record);

    TaskManager &m_manager;
    TaskDatabase &m_database;
    const platform::Clock &m_clock;
    std::map<std::uint32_t, std::chrono::milliseconds> m_lastProgress;
};

} // namespace tollivar::tasks
