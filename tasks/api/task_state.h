#pragma once

#include <cstdint>

namespace tollivar::tasks {

/// What a task is doing. Shared by manager, worker and list: never renumber.
enum class TaskState : std::uint16_t {
    New = 0,           ///< never started in this session
    Started = 1,       ///< its thread was launched
    Waiting = 2,       ///< waits for a free slot
    ResolvingPage = 3, ///< set by the worker
    TakingTitle = 4,   ///< set by the worker
    Downloading = 5,   ///< set by the worker
    Failed = 7,        ///< a retry may follow
    Completed = 8,
    Stopped = 9,
    Stopping = 10,          ///< a stop was asked of a running thread
    StoppingToRestart = 11, ///< as Stopping; is queued again when its thread ends
    Removed = 12,
};

/// True for the states in which a worker is about its work and no stop was asked.
[[nodiscard]] constexpr bool isRunning(TaskState state)
{
    return state == TaskState::Started || state == TaskState::ResolvingPage ||
           state == TaskState::TakingTitle || state == TaskState::Downloading;
}

} // namespace tollivar::tasks
