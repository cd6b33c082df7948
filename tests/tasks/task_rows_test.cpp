#include "tests/support/wait_until.h"
#include "tests/tasks/manager_fixture.h"

#include <QElapsedTimer>
#include <QFile>

#include <numeric>

namespace tollivar::tasks {
namespace {

using Ids = std::vector<std::uint32_t>;

constexpr TaskOrder kByNumberDescending{.column = SortColumn::Number,
                                        .direction = SortDirection::Descending};

/// What the window asks of the manager: order, counts, speed, removal of many rows.
class TaskRowsTest : public ManagerTest {
protected:
    void countChanges()
    {
        m_manager->onRowsChanged([this] { ++m_changes; });
    }

    void sort(TaskOrder order) { m_manager->sort(order.column, order.direction); }

    int m_changes = 0;
};

TEST_F(TaskRowsTest, sortingMovesTheRowsAndTellsOnce)
{
    begin();
    const Ids ids = {add(), add(), add()};
    countChanges();
    sort(kByNumberDescending);
    EXPECT_EQ(shown(), (Ids{ids[2], ids[1], ids[0]}));
    EXPECT_EQ(m_changes, 1);
    EXPECT_EQ(m_manager->order(), kByNumberDescending);
}

TEST_F(TaskRowsTest, commandsMeanTheSortedRows)
{
    begin();
    const Ids ids = {add(), add()};
    sort(kByNumberDescending);
    EXPECT_EQ(m_manager->startTask(0, Placement::Keep), StartOutcome::Started);
    EXPECT_EQ(state(ids[1]), TaskState::Started);
    EXPECT_EQ(state(ids[0]), TaskState::New);
}

TEST_F(TaskRowsTest, anotherFilterReturnsToTheOrderOfTheIds)
{
    begin();
    const Ids ids = {add(), add()};
    sort(kByNumberDescending);
    m_manager->setFilter(TaskFilter::All);
    EXPECT_EQ(shown(), (Ids{ids[1], ids[0]}));
    m_manager->setFilter(TaskFilter::Downloading);
    EXPECT_EQ(shown(), ids);
    EXPECT_EQ(m_manager->order(), TaskOrder{});
}

TEST_F(TaskRowsTest, everyChangeOfTheRowsIsTold)
{
    begin();
    countChanges();
    const std::uint32_t id = add();
    EXPECT_EQ(m_changes, 1);
    addCompleted(); // Not shown among all before the next rebuild.
    EXPECT_EQ(m_changes, 1);
    m_manager->removeTask(m_manager->rowOf(id), FileOnRemoval::Keep);
    EXPECT_EQ(m_changes, 2);
    m_manager->removeTask(7, FileOnRemoval::Keep);
    EXPECT_EQ(m_changes, 2);
}

TEST_F(TaskRowsTest, countsFollowTheStates)
{
    begin({.maximumDownloads = 1});
    const Ids ids = {add(), add(), add()};
    addCompleted();
    EXPECT_EQ(m_manager->unfinishedCount(), 3);
    EXPECT_EQ(m_manager->waitingCount(), 0);
    for (const std::uint32_t id : ids) {
        start(id);
    }
    EXPECT_EQ(m_manager->waitingCount(), 2);
    stop(ids[1]);
    EXPECT_EQ(m_manager->waitingCount(), 1);
    start(ids[1]);
    EXPECT_EQ(m_manager->waitingCount(), 2);
    end(ids[0], TaskEventCode::Completed);
    EXPECT_EQ(m_manager->waitingCount(), 1);
    EXPECT_EQ(m_manager->unfinishedCount(), 2);
    m_manager->removeTask(m_manager->rowOf(ids[2]), FileOnRemoval::Keep);
    EXPECT_EQ(m_manager->waitingCount(), 0);
    EXPECT_EQ(m_manager->unfinishedCount(), 1);
}

TEST_F(TaskRowsTest, theSpeedIsThatOfAllDownloadsTogether)
{
    begin();
    const Ids ids = {add(), add(), add(), add()};
    for (std::size_t i = 0; i < 3; ++i) {
        start(ids[i]);
        worker(ids[i]).setProgress({.bytesPerSecond = 1'000.0});
    }
    worker(ids[3]).setProgress({.bytesPerSecond = 5'000.0}); // A figure of an earlier run.
    worker(ids[0]).enterStage(TaskState::Downloading);
    worker(ids[1]).enterStage(TaskState::Downloading);
    EXPECT_DOUBLE_EQ(m_manager->totalSpeed(), 2'000.0);
    end(ids[0], TaskEventCode::Completed);
    EXPECT_DOUBLE_EQ(m_manager->totalSpeed(), 1'000.0);
}

TEST_F(TaskRowsTest, aRetriedDownloadCountsOnceInTheSpeed)
{
    begin({.retry = {.maximumRetries = 1}});
    const std::uint32_t id = add();
    start(id);
    end(id, TaskEventCode::DownloadFailed);
    worker(id).enterStage(TaskState::Downloading);
    worker(id).setProgress({.bytesPerSecond = 700.0});
    EXPECT_DOUBLE_EQ(m_manager->totalSpeed(), 700.0);
}

TEST_F(TaskRowsTest, whatIsReachedIsThatOfAllDownloadsTogether)
{
    begin();
    const Ids ids = {add(), add(), add(), add()};
    EXPECT_DOUBLE_EQ(m_manager->totalReached(), 0);
    for (const std::uint32_t id : ids) {
        start(id);
        worker(id).setProgress({.percentHundredths = 2'500});
    }
    worker(ids[0]).enterStage(TaskState::Downloading);
    worker(ids[1]).enterStage(TaskState::Downloading);
    EXPECT_DOUBLE_EQ(m_manager->totalReached(), 0.5);
    // A server that sends more than it said.
    worker(ids[1]).setProgress({.percentHundredths = 70'000});
    EXPECT_DOUBLE_EQ(m_manager->totalReached(), 1.25);
    end(ids[0], TaskEventCode::Completed);
    EXPECT_DOUBLE_EQ(m_manager->totalReached(), 1);
}

TEST_F(TaskRowsTest, onlyACompletedTaskIsCompleted)
{
    begin();
    addCompleted();
    add();
    m_manager->setFilter(TaskFilter::Downloaded);
    EXPECT_TRUE(m_manager->isCompletedAt(0));
    EXPECT_FALSE(m_manager->isCompletedAt(1));
    m_manager->setFilter(TaskFilter::Downloading);
    EXPECT_FALSE(m_manager->isCompletedAt(0));
    EXPECT_FALSE(m_manager->isCompletedAt(-1));
}

TEST_F(TaskRowsTest, manyRowsGoByTheirOldNumbersAndAreToldOnce)
{
    begin();
    const Ids ids = {add(), add(), add(), add(), add()};
    countChanges();
    // Twice the same row, and one that is not there.
    m_manager->removeTasks(std::vector{3, 0, 3, 99}, FileOnRemoval::Keep);
    EXPECT_EQ(shown(), (Ids{ids[1], ids[2], ids[4]}));
    EXPECT_EQ(stored().size(), 3U);
    EXPECT_EQ(m_changes, 1);
    m_manager->removeTasks({}, FileOnRemoval::Keep);
    EXPECT_EQ(m_changes, 1);
}

TEST_F(TaskRowsTest, removingManyStopsTheRunningAndDeletesTheFilesOfTheIdle)
{
    begin();
    const Ids ids = {add(), add()};
    TaskInfo record = worker(ids[1]).record();
    record.bFileCreated = 1;
    worker(ids[1]).setRecord(record);
    QFile file(record.outputPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    start(ids[0]);
    m_manager->removeTasks(std::vector{0, 1}, FileOnRemoval::Delete);
    EXPECT_FALSE(file.exists());
    EXPECT_EQ(m_manager->visibleCount(), 0);
    waitForEnds(1);
    EXPECT_EQ(m_manager->runningCount(), 0);
    EXPECT_EQ(stored().size(), 1U);
}

TEST_F(TaskRowsTest, tenThousandRowsAreRemovedInOneTransaction)
{
    constexpr int kRows = 10'000;
    begin();
    m_database->inTransaction([this] {
        for (int i = 0; i < kRows; ++i) {
            add();
        }
    });
    std::vector<int> rows(kRows);
    std::iota(rows.begin(), rows.end(), 0);
    countChanges();
    QElapsedTimer clock;
    clock.start();
    m_manager->removeTasks(rows, FileOnRemoval::Keep);
    // One transaction each takes the better part of a minute, removing row by row from a long
    // list seconds; sanitizers slow the little that is left down tenfold.
    EXPECT_LT(clock.elapsed(), 8'000);
    EXPECT_EQ(m_manager->visibleCount(), 0);
    EXPECT_EQ(m_manager->unfinishedCount(), 0);
    EXPECT_EQ(m_changes, 1);
    EXPECT_TRUE(stored().empty());
    RecordProperty("milliseconds", static_cast<int>(clock.elapsed()));
}

} // namespace
} // namespace tollivar::tasks
