#pragma once

#include "tasks/api/task_event.h"
#include "tasks/api/task_state.h"

#include <cstdint>

namespace tollivar::tasks {

/// What can happen to a task.
enum class TaskInput : std::uint8_t {
    StartWithSlot,    ///< the person starts it, and a slot is free
    StartWithoutSlot, ///< the person starts it, and all slots are taken
    SlotFreed,        ///< a slot is offered to it
    Stop,             ///< the person stops it
    RunCompleted,     ///< its run ended with a finished file
    RunFailedRetry,   ///< its run failed, and attempts are left
    RunFailedFinally, ///< its run failed for the last time
    RunStopped,       ///< its run ended after a stop
    Remove,           ///< the person removes it
};

/// What the manager has to do about it.
enum class TaskAction : std::uint8_t {
    None,
    Launch,     ///< start its thread
    Enqueue,    ///< let it wait for a slot
    SignalStop, ///< ask its thread to stop
};

struct TaskTransition {
    TaskState next = TaskState::New;
    TaskAction action = TaskAction::None;

    bool operator==(const TaskTransition &) const = default;
};

/// The state that follows, and what to do; the same state and nothing when the input means nothing
/// in this state.
///
/// A task that completes after a stop was asked is stopped all the same: the person asked. A
/// failed run that is tried again passes through Failed; its next state is what comes after that.
[[nodiscard]] constexpr TaskTransition nextState(TaskState state, TaskInput input)
{
    const bool isIdle = state == TaskState::New || state == TaskState::Failed ||
                        state == TaskState::Completed || state == TaskState::Stopped;
    const TaskTransition unchanged{state, TaskAction::None};
    if (state == TaskState::Removed) {
        return unchanged;
    }
    switch (input) {
    case TaskInput::StartWithSlot:
    case TaskInput::StartWithoutSlot:
        if (state == TaskState::Stopping) {
            return {TaskState::StoppingToRestart, TaskAction::None};
        }
        if (!isIdle) {
            return unchanged;
        }
        return input == TaskInput::StartWithSlot
                   ? TaskTransition{TaskState::Started, TaskAction::Launch}
                   : TaskTransition{TaskState::Waiting, TaskAction::Enqueue};
    case TaskInput::SlotFreed:
        return state == TaskState::Waiting ? TaskTransition{TaskState::Started, TaskAction::Launch}
                                           : unchanged;
    case TaskInput::Stop:
        if (isRunning(state)) {
            return {TaskState::Stopping, TaskAction::SignalStop};
        }
        if (state == TaskState::StoppingToRestart) {
            return {TaskState::Stopping, TaskAction::None};
        }
        return state == TaskState::Waiting ? TaskTransition{TaskState::Stopped, TaskAction::None}
                                           : unchanged;
    case TaskInput::Remove:
        return {TaskState::Removed, TaskAction::SignalStop};
    case TaskInput::RunCompleted:
    case TaskInput::RunFailedRetry:
    case TaskInput::RunFailedFinally:
    case TaskInput::RunStopped:
        break;
    }
    if (state == TaskState::Stopping) {
        return {TaskState::Stopped, TaskAction::None};
    }
    if (state == TaskState::StoppingToRestart) {
        return {TaskState::Waiting, TaskAction::Enqueue};
    }
    // A run stops only when it was asked to, and then the task is in one of the two states above.
    if (!isRunning(state) || input == TaskInput::RunStopped) {
        return unchanged;
    }
    if (input == TaskInput::RunCompleted) {
        return {TaskState::Completed, TaskAction::None};
    }
    return input == TaskInput::RunFailedRetry
               ? TaskTransition{TaskState::Started, TaskAction::Launch}
               : TaskTransition{TaskState::Failed, TaskAction::None};
}

} // namespace tollivar::tasks
