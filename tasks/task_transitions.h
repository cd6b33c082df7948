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

namespace internal {

[[nodiscard]] constexpr TaskTransition unchanged(TaskState state)
{
    return {state, TaskAction::None};
}

[[nodiscard]] constexpr TaskTransition afterStart(TaskState state, TaskTransition begun)
{
    switch (state) {
    case TaskState::New:
    case TaskState::Failed:
    case TaskState::Completed:
    case TaskState::Stopped:
        return begun;
    case TaskState::Stopping:
        return {TaskState::StoppingToRestart, TaskAction::None};
    case TaskState::Started:
    case TaskState::Waiting:
    case TaskState::ResolvingPage:
    case TaskState::TakingTitle:
    case TaskState::Downloading:
    case TaskState::StoppingToRestart:
    case TaskState::Removed:
        break;
    }
    return unchanged(state);
}

[[nodiscard]] constexpr TaskTransition afterStop(TaskState state)
{
    switch (state) {
    case TaskState::Started:
    case TaskState::ResolvingPage:
    case TaskState::TakingTitle:
    case TaskState::Downloading:
        return {TaskState::Stopping, TaskAction::SignalStop};
    case TaskState::StoppingToRestart:
        return {TaskState::Stopping, TaskAction::None};
    case TaskState::Waiting:
        return {TaskState::Stopped, TaskAction::None};
    case TaskState::New:
    case TaskState::Failed:
    case TaskState::Completed:
    case TaskState::Stopped:
    case TaskState::Stopping:
    case TaskState::Removed:
        break;
    }
    return unchanged(state);
}

/// `ended` is what becomes of a task of which no stop was asked.
[[nodiscard]] constexpr TaskTransition afterRun(TaskState state, TaskTransition ended)
{
    if (state == TaskState::Stopping) {
        return {TaskState::Stopped, TaskAction::None};
    }
    if (state == TaskState::StoppingToRestart) {
        return {TaskState::Waiting, TaskAction::Enqueue};
    }
    return isRunning(state) ? ended : unchanged(state);
}

} // namespace internal

/// The state that follows, and what to do; the same state and nothing when the input means nothing
/// in this state.
///
/// A task that completes after a stop was asked is stopped all the same: the person asked. A
/// failed run that is tried again passes through Failed; its next state is what comes after that.
/// A run stops only when it was asked to, so RunStopped changes no task that is simply running.
[[nodiscard]] constexpr TaskTransition nextState(TaskState state, TaskInput input)
{
    if (state == TaskState::Removed) {
        return internal::unchanged(state);
    }
    switch (input) {
    case TaskInput::StartWithSlot:
        return internal::afterStart(state, {TaskState::Started, TaskAction::Launch});
    case TaskInput::StartWithoutSlot:
        return internal::afterStart(state, {TaskState::Waiting, TaskAction::Enqueue});
    case TaskInput::SlotFreed:
        return state == TaskState::Waiting ? TaskTransition{TaskState::Started, TaskAction::Launch}
                                           : internal::unchanged(state);
    case TaskInput::Stop:
        return internal::afterStop(state);
    case TaskInput::RunCompleted:
        return internal::afterRun(state, {TaskState::Completed, TaskAction::None});
    case TaskInput::RunFailedRetry:
        return internal::afterRun(state, {TaskState::Started, TaskAction::Launch});
    case TaskInput::RunFailedFinally:
        return internal::afterRun(state, {TaskState::Failed, TaskAction::None});
    case TaskInput::RunStopped:
        return internal::afterRun(state, internal::unchanged(state));
    case TaskInput::Remove:
        return {TaskState::Removed, TaskAction::SignalStop};
    }
    return internal::unchanged(state);
}

} // namespace tollivar::tasks
