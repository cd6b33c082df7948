#include "tasks/task_transitions.h"

#include <gtest/gtest.h>

#include <array>
#include <map>

namespace tollivar::tasks {
namespace {

using S = TaskState;
using I = TaskInput;
using A = TaskAction;

constexpr std::array kStates = {
    S::New,    S::Started,   S::Waiting, S::ResolvingPage, S::TakingTitle,       S::Downloading,
    S::Failed, S::Completed, S::Stopped, S::Stopping,      S::StoppingToRestart, S::Removed};
constexpr std::array kInputs = {
    I::StartWithSlot,  I::StartWithoutSlot, I::SlotFreed,  I::Stop,  I::RunCompleted,
    I::RunFailedRetry, I::RunFailedFinally, I::RunStopped, I::Remove};

/// Every pair that changes something; all others keep the state and do nothing.
std::map<std::pair<S, I>, TaskTransition> changes()
{
    std::map<std::pair<S, I>, TaskTransition> table;
    for (const S idle : {S::New, S::Failed, S::Completed, S::Stopped}) {
        table[{idle, I::StartWithSlot}] = {S::Started, A::Launch};
        table[{idle, I::StartWithoutSlot}] = {S::Waiting, A::Enqueue};
    }
    for (const S running : {S::Started, S::ResolvingPage, S::TakingTitle, S::Downloading}) {
        table[{running, I::Stop}] = {S::Stopping, A::SignalStop};
        table[{running, I::RunCompleted}] = {S::Completed, A::None};
        table[{running, I::RunFailedRetry}] = {S::Started, A::Launch};
        table[{running, I::RunFailedFinally}] = {S::Failed, A::None};
    }
    table[{S::Waiting, I::SlotFreed}] = {S::Started, A::Launch};
    table[{S::Waiting, I::Stop}] = {S::Stopped, A::None};
    table[{S::Stopping, I::StartWithSlot}] = {S::StoppingToRestart, A::None};
    table[{S::Stopping, I::StartWithoutSlot}] = {S::StoppingToRestart, A::None};
    table[{S::StoppingToRestart, I::Stop}] = {S::Stopping, A::None};
    for (const I end : {I::RunCompleted, I::RunFailedRetry, I::RunFailedFinally, I::RunStopped}) {
        table[{S::Stopping, end}] = {S::Stopped, A::None};
        table[{S::StoppingToRestart, end}] = {S::Waiting, A::Enqueue};
    }
    for (const S state : kStates) {
        if (state != S::Removed) {
            table[{state, I::Remove}] = {S::Removed, A::SignalStop};
        }
    }
    return table;
}

TEST(TaskTransitions, everyPairOfStateAndInputLeadsWhereItMust)
{
    const auto table = changes();
    for (const S state : kStates) {
        for (const I input : kInputs) {
            const auto expected = table.find({state, input});
            EXPECT_EQ(nextState(state, input),
                      expected == table.end() ? (TaskTransition{state, A::None}) : expected->second)
                << "state " << static_cast<int>(state) << ", input " << static_cast<int>(input);
        }
    }
}

TEST(TaskTransitions, aTaskThatCompletesWhileItIsStoppedStaysStopped)
{
    EXPECT_EQ(nextState(S::Stopping, I::RunCompleted).next, S::Stopped);
}

} // namespace
} // namespace tollivar::tasks
