#include "tests/tasks/manager_fixture.h"

namespace tollivar::tasks {
namespace {

class RecorderTest : public ManagerTest {
protected:
    RecorderTest()
    {
        begin();
        m_id = add();
    }

    void record(TaskEventCode code, std::uint64_t value = 0)
    {
        m_recorder->record(packTaskEvent(m_id, code), value);
    }

    [[nodiscard]] TaskInfo storedTask() const { return stored().front().task; }

    void change(const std::function<void(TaskInfo &)> &edit)
    {
        TaskInfo task = m_manager->worker(m_id)->record();
        edit(task);
        m_manager->worker(m_id)->setRecord(task);
    }

    std::uint32_t m_id = 0;
};

TEST_F(RecorderTest, anAnswerStoresAddressTypeCookiesAgentAndReferer)
{
    change([](TaskInfo &task) {
        task.strDownloadUrl = QStringLiteral("http://m/it's");
        task.strFileType = QStringLiteral(".mp4");
        task.strCookies = QStringLiteral("c");
        task.strAgent = QStringLiteral("a");
        task.strReferer = QStringLiteral("r");
        task.strOutputName = QStringLiteral("not yet");
    });
    record(TaskEventCode::AnswerStored);

    EXPECT_EQ(storedTask().strDownloadUrl, QStringLiteral("http://m/it's"));
    EXPECT_EQ(storedTask().strFileType, QStringLiteral(".mp4"));
    EXPECT_EQ(storedTask().strCookies, QStringLiteral("c"));
    EXPECT_EQ(storedTask().strAgent, QStringLiteral("a"));
    EXPECT_EQ(storedTask().strReferer, QStringLiteral("r"));
    EXPECT_EQ(storedTask().strOutputName, QStringLiteral("clip"));
}

TEST_F(RecorderTest, aNameASizeAndAFileAreStored)
{
    change([](TaskInfo &task) { task.strOutputName = QStringLiteral("A day"); });
    record(TaskEventCode::RecordChanged);
    record(TaskEventCode::SizeKnown, 3'000'000'000U);
    record(TaskEventCode::FileCreated);

    EXPECT_EQ(storedTask().strOutputName, QStringLiteral("A day"));
    EXPECT_EQ(storedTask().dwSize, 3'000'000'000U);
    EXPECT_EQ(storedTask().bFileCreated, 1);
    record(TaskEventCode::SizeKnown, kUnknownSize);
    EXPECT_EQ(storedTask().dwSize, kUnknownSize);
}

TEST_F(RecorderTest, progressIsStoredAtMostOnceASecond)
{
    record(TaskEventCode::Progress, 100);
    m_clock.advance(std::chrono::milliseconds(999));
    record(TaskEventCode::Progress, 200);
    EXPECT_EQ(storedTask().dwDownloadSize, 100U);
    m_clock.advance(std::chrono::milliseconds(1));
    record(TaskEventCode::ProgressUnknownSize, 300);
    EXPECT_EQ(storedTask().dwDownloadSize, 300U);
}

TEST_F(RecorderTest, aStreamsProjectedSizeIsStoredWithItsProgressAndItsRealOneAtTheEnd)
{
    change([](TaskInfo &task) {
        task.nProtocol = 0;
        task.dwSize = 900;
        task.dwDownloadSize = 450;
        task.nCompletedStatus = 1;
    });
    record(TaskEventCode::SizeKnown, 900);
    EXPECT_EQ(storedTask().dwSize, kUnknownSize);
    record(TaskEventCode::Progress, 450);
    EXPECT_EQ(storedTask().dwSize, 900U);
    EXPECT_EQ(storedTask().dwDownloadSize, 450U);
    record(TaskEventCode::Completed);
    EXPECT_EQ(storedTask().dwSize, 450U);
}

TEST_F(RecorderTest, completionStoresBytesAndStatus)
{
    change([](TaskInfo &task) {
        task.dwSize = 50;
        task.dwDownloadSize = 40;
        task.nCompletedStatus = 1;
    });
    record(TaskEventCode::SizeKnown, 50);
    record(TaskEventCode::Completed);

    EXPECT_EQ(storedTask().dwDownloadSize, 40U);
    EXPECT_EQ(storedTask().dwSize, 50U);
    EXPECT_EQ(storedTask().nCompletedStatus, 1);
}

TEST_F(RecorderTest, aSizeThatWasUnknownIsKnownAtTheEnd)
{
    change([](TaskInfo &task) {
        task.dwDownloadSize = 40;
        task.nCompletedStatus = 1;
    });
    record(TaskEventCode::Completed);
    EXPECT_EQ(storedTask().dwSize, 40U);
}

TEST_F(RecorderTest, otherEventsAndUnknownTasksStoreNothing)
{
    const TaskInfo before = storedTask();
    for (const TaskEventCode code :
         {TaskEventCode::ParsingAddress, TaskEventCode::DownloadStarted, TaskEventCode::TakingTitle,
          TaskEventCode::ParseFailed, TaskEventCode::DownloadFailed, TaskEventCode::Stopped}) {
        record(code, 7);
    }
    m_recorder->record(packTaskEvent(999, TaskEventCode::FileCreated), 0);
    EXPECT_EQ(storedTask(), before);
}

} // namespace
} // namespace tollivar::tasks
