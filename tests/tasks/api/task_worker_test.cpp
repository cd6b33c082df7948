#include "tasks/api/task_worker.h"
#include "tests/support/sandbox.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using platform::AppMessage;
using tasks::TaskEventCode;
using tasks::TaskInfo;
using tasks::TaskState;

namespace {

/// A worker whose run is no subject here.
class IdleWorker final : public tasks::TaskWorker {
public:
    void run() override { post(TaskEventCode::Completed); }
};

const std::vector kAllStates{
    TaskState::New,           TaskState::Started,           TaskState::Waiting,
    TaskState::ResolvingPage, TaskState::TakingTitle,       TaskState::Downloading,
    TaskState::Failed,        TaskState::Completed,         TaskState::Stopped,
    TaskState::Stopping,      TaskState::StoppingToRestart, TaskState::Removed};

} // namespace

class TaskWorkerTest : public testing::Test {
protected:
    TaskWorkerTest()
    {
        worker.setOwner(inbox.port());
        worker.setTaskId(70'000);
    }

    /// The events that arrived since the last call.
    [[nodiscard]] std::vector<AppMessage> events()
    {
        received.clear();
        inbox.drain();
        return received;
    }

    std::vector<AppMessage> received;
    platform::AppMessageInbox inbox{
        [this](const AppMessage &message) { received.push_back(message); }};
    IdleWorker worker;
    Sandbox sandbox;
};

TEST_F(TaskWorkerTest, beginsWithItsDefaults)
{
    const IdleWorker fresh;
    EXPECT_EQ(fresh.record(), TaskInfo());
    EXPECT_EQ(fresh.browserVersion(), -1);
    EXPECT_EQ(fresh.retryAttempt(), 0);
    EXPECT_EQ(fresh.maximumRetries(), 3);
    EXPECT_EQ(fresh.retryPause(), std::chrono::seconds(5));
    EXPECT_EQ(fresh.state(), TaskState::New);
    EXPECT_EQ(fresh.previousState(), TaskState::New);
    EXPECT_EQ(fresh.failure(), tasks::TaskFailure());
    EXPECT_FALSE(fresh.deleteOnStop());
    EXPECT_EQ(fresh.progress(), tasks::TaskProgress());
}

TEST_F(TaskWorkerTest, givesBackWhatItWasTold)
{
    TaskInfo record;
    record.strOutputName = u"clip"_s;
    record.m_ConvOpts.m_nLengthSeconds = 9;
    worker.setRecord(record);
    EXPECT_EQ(worker.record(), record);
    EXPECT_EQ(worker.taskId(), 70'000U);
    worker.setBrowserVersion(156);
    EXPECT_EQ(worker.browserVersion(), 156);
    worker.setRetryAttempt(2);
    EXPECT_EQ(worker.retryAttempt(), 2);
    worker.setMaximumRetries(7);
    EXPECT_EQ(worker.maximumRetries(), 7);
    worker.setRetryPause(std::chrono::seconds(1));
    EXPECT_EQ(worker.retryPause(), std::chrono::seconds(1));
    const tasks::TaskFailure failure{tasks::ErrorKind::HttpStatus, 404};
    worker.setFailure(failure);
    EXPECT_EQ(worker.failure(), failure);
    const tasks::TaskProgress progress{4725, 1000.5, 12, 4096};
    worker.setProgress(progress);
    EXPECT_EQ(worker.progress(), progress);
}

TEST_F(TaskWorkerTest, remembersTheStateBeforeTheLastChange)
{
    worker.setState(TaskState::Started);
    worker.enterStage(TaskState::ResolvingPage);
    EXPECT_EQ(worker.state(), TaskState::ResolvingPage);
    EXPECT_EQ(worker.previousState(), TaskState::Started);
}

TEST_F(TaskWorkerTest, entersAStageFromEveryStateButThoseThatAskForAnEnd)
{
    for (const TaskState before : kAllStates) {
        worker.setState(before);
        worker.enterStage(TaskState::Downloading);
        const bool asksForEnd = before == TaskState::Stopping ||
                                before == TaskState::StoppingToRestart ||
                                before == TaskState::Removed;
        EXPECT_EQ(worker.state(), asksForEnd ? before : TaskState::Downloading)
            << "from " << static_cast<int>(before);
    }
}

TEST_F(TaskWorkerTest, letsTheManagerSetAnyState)
{
    for (const TaskState before : kAllStates) {
        for (const TaskState after : kAllStates) {
            worker.setState(before);
            worker.setState(after);
            EXPECT_EQ(worker.state(), after);
            if (before != TaskState::Failed) {
                EXPECT_EQ(worker.previousState(), before);
            }
        }
    }
}

TEST_F(TaskWorkerTest, postsItsIdItsCodeAndTheValue)
{
    worker.post(TaskEventCode::SizeKnown, 123'456);
    const std::vector<AppMessage> posted = events();
    ASSERT_EQ(posted.size(), 1U);
    EXPECT_EQ(posted.front().id, platform::AppMessageId::TaskEvent);
    EXPECT_EQ(tasks::taskIdOf(posted.front().first), 70'000U);
    EXPECT_EQ(tasks::eventCodeOf(posted.front().first), TaskEventCode::SizeKnown);
    EXPECT_EQ(posted.front().second, 123'456U);
}

TEST_F(TaskWorkerTest, postsNowhereWithoutAnOwner)
{
    worker.setOwner({});
    worker.post(TaskEventCode::Completed);
    EXPECT_TRUE(events().empty());
}

TEST_F(TaskWorkerTest, replacesProgressThatStillWaitsByTheNewest)
{
    for (const TaskEventCode code : {TaskEventCode::Progress, TaskEventCode::ProgressUnknownSize}) {
        for (std::uint64_t bytes = 1; bytes <= 100; ++bytes) {
            worker.post(code, bytes);
        }
        const std::vector<AppMessage> posted = events();
        ASSERT_EQ(posted.size(), 1U);
        EXPECT_EQ(posted.front().second, 100U);
    }
}

TEST_F(TaskWorkerTest, neverMergesAnyOtherEvent)
{
    for (const TaskEventCode code :
         {TaskEventCode::ParsingAddress, TaskEventCode::DownloadStarted, TaskEventCode::TakingTitle,
          TaskEventCode::ParseFailed, TaskEventCode::DownloadFailed, TaskEventCode::Completed,
          TaskEventCode::Stopped, TaskEventCode::SizeKnown, TaskEventCode::RecordChanged,
          TaskEventCode::AnswerStored, TaskEventCode::FileCreated}) {
        worker.post(code, 1);
        worker.post(code, 2);
        EXPECT_EQ(events().size(), 2U) << static_cast<int>(code);
    }
}

class DeleteOnStopTest : public TaskWorkerTest {
protected:
    DeleteOnStopTest()
    {
        record.strOutputFolder = sandbox.path() + u'/';
        record.strOutputName = u"clip"_s;
        record.bFileCreated = 1;
        worker.setRecord(record);
        sandbox.write(u"clip.flv"_s, "partly");
    }

    [[nodiscard]] bool fileExists() const { return QFileInfo::exists(record.outputPath()); }

    TaskInfo record;
};

TEST_F(DeleteOnStopTest, removesThePartlyWrittenFileBeforeTheEventArrives)
{
    worker.setDeleteOnStop(true);
    worker.post(TaskEventCode::Stopped);
    EXPECT_FALSE(fileExists());
    EXPECT_EQ(events().size(), 1U);
}

TEST_F(DeleteOnStopTest, leavesTheFileWhenTheFlagIsClear)
{
    worker.post(TaskEventCode::Stopped);
    EXPECT_TRUE(fileExists());
}

TEST_F(DeleteOnStopTest, leavesTheFileAtAllOtherEnds)
{
    worker.setDeleteOnStop(true);
    worker.post(TaskEventCode::Completed);
    worker.post(TaskEventCode::DownloadFailed);
    worker.post(TaskEventCode::ParseFailed);
    EXPECT_TRUE(fileExists());
}

TEST_F(DeleteOnStopTest, leavesAFileThatNoRunHasMade)
{
    record.bFileCreated = 0;
    worker.setRecord(record);
    worker.setDeleteOnStop(true);
    worker.post(TaskEventCode::Stopped);
    EXPECT_TRUE(fileExists());
}

TEST_F(DeleteOnStopTest, postsEvenWhenTheFileCannotBeRemoved)
{
    record.strOutputName = u"missing/clip"_s;
    worker.setRecord(record);
    worker.setDeleteOnStop(true);
    worker.post(TaskEventCode::Stopped);
    EXPECT_EQ(events().size(), 1U);
}

/// A missing lock shows as a torn record here, or as a report of ThreadSanitizer.
TEST_F(TaskWorkerTest, isReadAndWrittenByManyThreadsAtOnce)
{
    constexpr int rounds = 2000;
    std::atomic<bool> isTorn = false;
    const auto write = [this](const QString &text) {
        for (int round = 0; round < rounds; ++round) {
            TaskInfo record;
            record.strOutputName = text;
            record.strCookies = text;
            worker.setRecord(record);
            worker.setProgress({1, 2, 3, static_cast<std::uint32_t>(round)});
            worker.enterStage(TaskState::Downloading);
            worker.post(TaskEventCode::Progress, static_cast<std::uint64_t>(round));
        }
    };
    const auto read = [this, &isTorn] {
        for (int round = 0; round < rounds; ++round) {
            const TaskInfo record = worker.record();
            if (record.strOutputName != record.strCookies) {
                isTorn = true;
            }
            static_cast<void>(worker.progress());
            static_cast<void>(worker.state());
            worker.setState(TaskState::Stopping);
            worker.setFailure({tasks::ErrorKind::Network, 0});
        }
    };
    std::vector<std::thread> threads;
    threads.emplace_back(write, u"one"_s);
    threads.emplace_back(write, u"two"_s);
    threads.emplace_back(read);
    threads.emplace_back(read);
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_FALSE(isTorn);
    EXPECT_EQ(worker.progress().bytesDownloaded, static_cast<std::uint32_t>(rounds - 1));
}

} // namespace tollivar::test
