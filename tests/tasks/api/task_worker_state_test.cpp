#include "tasks/api/task_worker.h"

#include <gtest/gtest.h>

namespace tollivar::tasks {
namespace {

class IdleWorker final : public TaskWorker {
public:
    void run() override {}
};

TEST(TaskWorkerState, afterAFailureThePreviousStateIsTheStageThatFailed)
{
    for (const TaskState stage :
         {TaskState::ResolvingPage, TaskState::TakingTitle, TaskState::Downloading}) {
        IdleWorker worker;
        worker.setState(TaskState::Started);
        worker.enterStage(stage);
        worker.setState(TaskState::Failed);

        EXPECT_EQ(worker.state(), TaskState::Failed);
        EXPECT_EQ(worker.previousState(), stage);
    }
}

TEST(TaskWorkerState, theFailedStageIsStillKnownInThePauseBeforeTheRetry)
{
    IdleWorker worker;
    worker.setState(TaskState::Started);
    worker.enterStage(TaskState::ResolvingPage);
    worker.setState(TaskState::Failed);
    worker.setState(TaskState::Started);

    EXPECT_EQ(worker.previousState(), TaskState::ResolvingPage);

    worker.enterStage(TaskState::ResolvingPage);
    EXPECT_EQ(worker.previousState(), TaskState::Started);
}

TEST(TaskWorkerState, aStageDoesNotOverwriteARequestToStop)
{
    for (const TaskState asked :
         {TaskState::Stopping, TaskState::StoppingToRestart, TaskState::Removed}) {
        IdleWorker worker;
        worker.setState(TaskState::Started);
        worker.setState(asked);
        worker.enterStage(TaskState::Downloading);

        EXPECT_EQ(worker.state(), asked);
    }
}

} // namespace
} // namespace tollivar::tasks
