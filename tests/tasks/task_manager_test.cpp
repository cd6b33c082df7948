#include "tests/support/wait_until.h"
#include "tests/tasks/manager_fixture.h"

#include <QFile>

namespace tollivar::tasks {
namespace {

using Ids = std::vector<std::uint32_t>;

TEST_F(ManagerTest, withOneSlotTheOthersWaitAndFollowInTheirOrder)
{
    begin({.maximumDownloads = 1});
    const Ids ids = {add(), add(), add()};

    EXPECT_EQ(start(ids[0]), StartOutcome::Started);
    EXPECT_EQ(start(ids[1]), StartOutcome::Queued);
    EXPECT_EQ(start(ids[2]), StartOutcome::Queued);
    EXPECT_EQ(state(ids[1]), TaskState::Waiting);

    end(ids[0], TaskEventCode::Completed);
    EXPECT_EQ(state(ids[0]), TaskState::Completed);
    EXPECT_EQ(state(ids[1]), TaskState::Started);
    EXPECT_EQ(state(ids[2]), TaskState::Waiting);
    EXPECT_EQ(m_manager->runningCount(), 1);
}

TEST_F(ManagerTest, aWaitingTaskThatIsStoppedAndStartedAgainRunsOnce)
{
    begin({.maximumDownloads = 1});
    const Ids ids = {add(), add()};
    start(ids[0]);
    start(ids[1]);
    EXPECT_EQ(stop(ids[1]), StopOutcome::Stopped);
    EXPECT_EQ(state(ids[1]), TaskState::Stopped);
    EXPECT_EQ(start(ids[1]), StartOutcome::Queued);

    end(ids[0], TaskEventCode::Completed);
    end(ids[1], TaskEventCode::Completed);

    EXPECT_EQ(worker(ids[1]).runCount(), 1);
    EXPECT_EQ(m_manager->runningCount(), 0);
}

TEST_F(ManagerTest, aTaskThatIsStartedWhileItStopsRunsAgainAtTheEndOfItsRun)
{
    begin({.maximumDownloads = 1});
    const std::uint32_t id = add();
    start(id);
    worker(id).ignoreStop();
    EXPECT_EQ(stop(id), StopOutcome::Asked);
    EXPECT_EQ(start(id), StartOutcome::WillRestart);
    EXPECT_EQ(state(id), TaskState::StoppingToRestart);

    end(id, TaskEventCode::Stopped);

    EXPECT_EQ(state(id), TaskState::Started);
    EXPECT_EQ(m_manager->runningCount(), 1);
    worker(id).endWith(TaskEventCode::Stopped); // It still ignores the stop at the end.
}

TEST_F(ManagerTest, aRestartCanBeCalledOff)
{
    begin();
    const std::uint32_t id = add();
    start(id);
    worker(id).ignoreStop();
    stop(id);
    start(id);
    EXPECT_EQ(stop(id), StopOutcome::Asked);
    EXPECT_EQ(state(id), TaskState::Stopping);

    end(id, TaskEventCode::Stopped);
    EXPECT_EQ(state(id), TaskState::Stopped);
}

TEST_F(ManagerTest, aTaskThatCompletesWhileItIsStoppedEndsStopped)
{
    begin();
    const std::uint32_t id = add();
    start(id);
    worker(id).ignoreStop();
    stop(id);

    end(id, TaskEventCode::Completed);

    EXPECT_EQ(state(id), TaskState::Stopped);
    EXPECT_EQ(m_manager->completedCount(), 0);
    EXPECT_EQ(m_outcomes.back(), EventOutcome::Ignore);
}

TEST_F(ManagerTest, withoutRetriesTheFirstFailureIsFinal)
{
    begin({.maximumDownloads = 1, .retry = {.maximumRetries = 0}});
    const std::uint32_t id = add();
    start(id);
    end(id, TaskEventCode::DownloadFailed);

    EXPECT_EQ(state(id), TaskState::Failed);
    EXPECT_EQ(worker(id).retryAttempt(), 1);
    EXPECT_EQ(m_manager->runningCount(), 0);
}

TEST_F(ManagerTest, withThreeRetriesATaskRunsFourTimes)
{
    begin({.retry = {.maximumRetries = 3}});
    const std::uint32_t id = add();
    start(id);
    for (int attempt = 1; attempt <= 3; ++attempt) {
        end(id, attempt % 2 == 0 ? TaskEventCode::ParseFailed : TaskEventCode::DownloadFailed);
        EXPECT_EQ(state(id), TaskState::Started);
        EXPECT_EQ(worker(id).retryAttempt(), attempt);
        EXPECT_EQ(m_manager->runningCount(), 1);
    }
    end(id, TaskEventCode::DownloadFailed);
    EXPECT_EQ(state(id), TaskState::Failed);
    EXPECT_EQ(worker(id).runCount(), 4);
}

TEST_F(ManagerTest, aStartForgetsEarlierAttempts)
{
    begin({.retry = {.maximumRetries = 0}});
    const std::uint32_t id = add();
    start(id);
    end(id, TaskEventCode::DownloadFailed);
    EXPECT_EQ(start(id), StartOutcome::Started);
    EXPECT_EQ(worker(id).retryAttempt(), 0);
}

TEST_F(ManagerTest, theSecondRetryOfADirectFileChangesItsMethodForGood)
{
    begin({.retry = {.maximumRetries = 3}});
    TaskInfo task;
    task.nModeLow = 6;
    task.nModeHigh = 2;
    task.strFileType = QStringLiteral(".SWF");
    const std::uint32_t id = m_manager->addTask(task, TaskOrigin::New);
    start(id);
    end(id, TaskEventCode::DownloadFailed);
    EXPECT_EQ(worker(id).record().nModeLow, 6);
    end(id, TaskEventCode::DownloadFailed);
    EXPECT_EQ(worker(id).record().nModeLow, 2);
    EXPECT_EQ(stored().front().task.nModeLow, 2);
    EXPECT_EQ(stored().front().task.nModeHigh, 2);
}

TEST_F(ManagerTest, aChangedPolicyCountsFromTheNextFailureOn)
{
    begin({.retry = {.maximumRetries = 1}});
    TaskInfo task;
    task.nModeLow = 6;
    task.strFileType = QStringLiteral(".swf");
    const std::uint32_t id = m_manager->addTask(task, TaskOrigin::New);
    start(id);
    end(id, TaskEventCode::DownloadFailed);
    m_manager->setRetryPolicy({.maximumRetries = 3, .switchesMode = false});
    end(id, TaskEventCode::DownloadFailed);
    EXPECT_EQ(state(id), TaskState::Started);
    EXPECT_EQ(worker(id).record().nModeLow, 6);
    m_manager->setRetryPolicy({.maximumRetries = 3, .switchesMode = true});
    end(id, TaskEventCode::DownloadFailed);
    EXPECT_EQ(worker(id).record().nModeLow, 2);
}

TEST_F(ManagerTest, startingACompletedTaskLowersTheCountAndClearsItsColumns)
{
    begin();
    const std::uint32_t id = addCompleted();
    m_manager->setFilter(TaskFilter::Downloaded);
    EXPECT_EQ(m_manager->completedCount(), 1);

    EXPECT_EQ(start(id), StartOutcome::Started);

    EXPECT_EQ(m_manager->completedCount(), 0);
    EXPECT_EQ(stored().front().task.bFileCreated, 0);
    EXPECT_EQ(stored().front().task.nCompletedStatus, 0);
}

TEST_F(ManagerTest, movingToTheEndGivesANewIdAndTheLastRow)
{
    begin();
    const Ids ids = {add(), add()};
    start(ids[0], Placement::MoveToEnd);

    EXPECT_EQ(m_manager->worker(ids[0]), nullptr);
    EXPECT_EQ(m_manager->allTasks(), (Ids{ids[1], 2}));
    EXPECT_EQ(shown(), Ids{ids[1]});
    m_manager->setFilter(TaskFilter::Downloading);
    EXPECT_EQ(shown(), (Ids{ids[1], 2}));
    end(2, TaskEventCode::Completed);
    EXPECT_EQ(shown(), Ids{ids[1]});
}

TEST_F(ManagerTest, aCompletedTaskIsStartedAgainAtTheEndUnderANewId)
{
    begin();
    const Ids ids = {addCompleted(), addCompleted(), add()};
    const RowId row = m_manager->storedRowOf(ids[0]);
    m_manager->setFilter(TaskFilter::Downloaded);

    EXPECT_EQ(start(ids[0], Placement::MoveToEnd), StartOutcome::Started);

    EXPECT_EQ(shown(), Ids{ids[1]});
    EXPECT_EQ(m_manager->completedCount(), 1);
    EXPECT_EQ(m_manager->worker(ids[0]), nullptr);
    const std::uint32_t moved = m_manager->allTasks().back();
    EXPECT_GT(moved, ids[2]);
    EXPECT_EQ(m_manager->storedRowOf(moved), row);
    EXPECT_EQ(stored().front().task.nCompletedStatus, 0);

    m_manager->setFilter(TaskFilter::All);
    EXPECT_EQ(shown(), (Ids{ids[1], ids[2], moved}));
    end(moved, TaskEventCode::Completed);
    EXPECT_EQ(state(moved), TaskState::Completed);
    EXPECT_EQ(m_manager->completedCount(), 2);
    EXPECT_EQ(stored().front().task.nCompletedStatus, 1);
}

TEST_F(ManagerTest, removingAnIdleTaskTakesFileAndRow)
{
    begin();
    const std::uint32_t id = add();
    TaskInfo task = worker(id).record();
    task.bFileCreated = 1;
    worker(id).setRecord(task);
    m_sandbox.write(QStringLiteral("clip.flv"), "video");

    m_manager->removeTask(m_manager->rowOf(id), FileOnRemoval::Delete);

    EXPECT_FALSE(QFile::exists(m_sandbox.file(QStringLiteral("clip.flv"))));
    EXPECT_TRUE(stored().empty());
    EXPECT_EQ(m_manager->visibleCount(), 0);
}

TEST_F(ManagerTest, removingATaskWhoseThreadIsJustLeavingTakesFileAndRowToo)
{
    begin({.retry = {.maximumRetries = 0}});
    const std::uint32_t id = add();
    worker(id).linger();
    start(id);
    end(id, TaskEventCode::DownloadFailed);
    ASSERT_EQ(state(id), TaskState::Failed);
    TaskInfo task = worker(id).record();
    task.bFileCreated = 1;
    worker(id).setRecord(task);
    const QString path = m_sandbox.write(QStringLiteral("clip.flv"), "half a video");

    m_manager->removeTask(m_manager->rowOf(id), FileOnRemoval::Delete);

    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(stored().empty());
}

TEST_F(ManagerTest, removingATaskThatMadeNoFileLeavesOthersFilesAlone)
{
    begin();
    const std::uint32_t id = add();
    m_sandbox.write(QStringLiteral("clip.flv"), "somebody else's");
    m_manager->removeTask(m_manager->rowOf(id), FileOnRemoval::Delete);
    EXPECT_TRUE(QFile::exists(m_sandbox.file(QStringLiteral("clip.flv"))));
}

TEST_F(ManagerTest, removingARunningTaskStopsItKeepsItsRowAndFreesItsSlot)
{
    begin({.maximumDownloads = 1});
    const Ids ids = {add(), add()};
    start(ids[0]);
    start(ids[1]);

    m_manager->removeTask(m_manager->rowOf(ids[0]), FileOnRemoval::Keep);
    EXPECT_EQ(m_manager->worker(ids[0]), nullptr);
    waitForEnds(1);

    EXPECT_EQ(state(ids[1]), TaskState::Started);
    EXPECT_EQ(stored().size(), 2U);
    EXPECT_EQ(shown(), Ids{ids[1]});
}

TEST_F(ManagerTest, theFileOfARemovedRunningTaskGoesWhenItsRunHasStopped)
{
    begin();
    const std::uint32_t id = add();
    const QString path = m_sandbox.write(QStringLiteral("clip.flv"), "half a video");
    start(id);
    TaskInfo task = worker(id).record();
    task.bFileCreated = 1;
    worker(id).setRecord(task);
    worker(id).ignoreStop();

    m_manager->removeTask(m_manager->rowOf(id), FileOnRemoval::Delete);

    EXPECT_EQ(m_manager->worker(id), nullptr);
    EXPECT_EQ(m_manager->runningCount(), 1);
    EXPECT_TRUE(QFile::exists(path)); // The run still writes it.
    const auto running = m_made.back().lock();
    ASSERT_TRUE(running);
    running->endWith(TaskEventCode::Stopped);
    waitForEnds(1);

    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(m_manager->runningCount(), 0);
}

TEST_F(ManagerTest, aRaisedMaximumStartsOneAtOnce)
{
    begin({.maximumDownloads = 1});
    Ids ids;
    for (int i = 0; i < 4; ++i) {
        ids.push_back(add());
        start(ids.back());
    }
    m_manager->setMaximumDownloads(4);
    EXPECT_EQ(m_manager->runningCount(), 2);
    EXPECT_EQ(state(ids[1]), TaskState::Started);
    EXPECT_EQ(state(ids[2]), TaskState::Waiting);

    end(ids[0], TaskEventCode::Completed);
    EXPECT_EQ(m_manager->runningCount(), 2);
}

TEST_F(ManagerTest, aLoweredMaximumDrains)
{
    begin({.maximumDownloads = 2});
    const Ids ids = {add(), add(), add()};
    for (const std::uint32_t id : ids) {
        start(id);
    }
    m_manager->setMaximumDownloads(1);
    end(ids[0], TaskEventCode::Completed);
    EXPECT_EQ(state(ids[2]), TaskState::Waiting);
    end(ids[1], TaskEventCode::Completed);
    EXPECT_EQ(state(ids[2]), TaskState::Started);
}

TEST_F(ManagerTest, rowsThatAreNotThereAreNotTouched)
{
    begin();
    add();
    for (const int row : {-1, 1, 1'000}) {
        EXPECT_EQ(m_manager->startTask(row, Placement::Keep), StartOutcome::NotStarted);
        EXPECT_EQ(m_manager->stopTask(row), StopOutcome::Nothing);
        m_manager->removeTask(row, FileOnRemoval::Delete);
        EXPECT_EQ(m_manager->workerAt(row), nullptr);
    }
    EXPECT_EQ(m_manager->visibleCount(), 1);
}

TEST_F(ManagerTest, eachFilterShowsItsTasks)
{
    begin();
    const Ids ids = {add(), addCompleted(), add()};
    EXPECT_EQ(shown(), (Ids{ids[0], ids[2]})); // The completed one waits for a rebuild.

    m_manager->setFilter(TaskFilter::Downloaded);
    EXPECT_EQ(shown(), Ids{ids[1]});
    const std::uint32_t another = addCompleted();
    EXPECT_EQ(shown(), (Ids{ids[1], another}));
    add();
    EXPECT_EQ(m_manager->visibleCount(), 2);

    m_manager->setFilter(TaskFilter::Downloading);
    EXPECT_EQ(m_manager->visibleCount(), 3);
    m_manager->setFilter(TaskFilter::All);
    EXPECT_EQ(m_manager->visibleCount(), 5);
}

TEST_F(ManagerTest, theFirstFilterAlwaysBuildsTheListAndTheSameOneNever)
{
    begin();
    int changes = 0;
    m_manager->onRowsChanged([&changes] { ++changes; });
    m_manager->setFilter(TaskFilter::All);
    EXPECT_EQ(changes, 0);
    m_manager->setFilter(TaskFilter::Downloading);
    EXPECT_EQ(changes, 1);
}

TEST_F(ManagerTest, aCompletedTaskLeavesTheDownloadingAndJoinsTheDownloaded)
{
    begin();
    const Ids ids = {add(), add(), add()};
    start(ids[0]);
    start(ids[1]);
    m_manager->setFilter(TaskFilter::Downloading);
    end(ids[0], TaskEventCode::Completed);
    EXPECT_EQ(shown(), (Ids{ids[1], ids[2]}));

    m_manager->setFilter(TaskFilter::Downloaded);
    end(ids[1], TaskEventCode::Completed);
    EXPECT_EQ(shown(), (Ids{ids[0], ids[1]}));
    EXPECT_EQ(m_manager->completedCount(), 2);
}

TEST_F(ManagerTest, idsBeyond16BitsAreNotMixedUp)
{
    begin();
    Ids ids;
    m_database->inTransaction([&] {
        for (int i = 0; i < 66'000; ++i) {
            ids.push_back(m_manager->addTask({}, TaskOrigin::Stored, i + 1));
        }
    });
    start(ids[65'536 + 7]);
    end(ids[65'536 + 7], TaskEventCode::Completed);

    EXPECT_EQ(state(ids[65'536 + 7]), TaskState::Completed);
    EXPECT_EQ(state(ids[7]), TaskState::New);
}

TEST_F(ManagerTest, anEventOfAnUnknownTaskStillFreesItsSlot)
{
    begin({.maximumDownloads = 1});
    const std::uint32_t id = add();
    start(id);
    m_manager->onTaskEvent(packTaskEvent(999, TaskEventCode::Stopped), 0);
    EXPECT_EQ(m_manager->runningCount(), 0);
}

TEST_F(ManagerTest, shuttingDownEndsFiftyRunsAtOnce)
{
    begin({.maximumDownloads = 50});
    addCompleted();
    for (int i = 0; i < 50; ++i) {
        start(add());
    }
    EXPECT_EQ(m_manager->runningCount(), 50);
    const auto begun = std::chrono::steady_clock::now();
    m_manager->shutDown();
    EXPECT_EQ(m_manager->completedCount(), 0);
    EXPECT_EQ(m_manager->unfinishedCount(), 0);
    // One batch may take seven seconds; runs that listen take none of them.
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(5));
    EXPECT_EQ(m_manager->visibleCount(), 0);
}

} // namespace
} // namespace tollivar::tasks
