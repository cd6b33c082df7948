#include "tasks/row_order.h"
#include "tasks/visible_rows.h"
#include "tests/support/idle_worker.h"

#include <gtest/gtest.h>

namespace tollivar::tasks {
namespace {

using Ids = std::vector<std::uint32_t>;

class RowOrder : public ::testing::Test {
protected:
    /// Ids in the order of the calls, from 0.
    TaskWorker &add(const TaskInfo &record = {})
    {
        auto task = std::make_shared<ManagedTask>();
        task->worker = std::make_shared<test::IdleWorker>();
        task->worker->setTaskId(m_next++);
        task->worker->setRecord(record);
        m_rows.append(task);
        return *task->worker;
    }

    void addNamed(const QStringList &names)
    {
        for (const QString &name : names) {
            TaskInfo record;
            record.strOutputName = name;
            add(record);
        }
    }

    [[nodiscard]] Ids sorted(SortColumn column, SortDirection direction = SortDirection::Ascending)
    {
        m_rows.sort({.column = column, .direction = direction});
        return ids();
    }

    [[nodiscard]] Ids ids() const
    {
        Ids shown;
        for (int row = 0; row < m_rows.count(); ++row) {
            shown.push_back(m_rows.at(row)->worker->taskId());
            EXPECT_EQ(m_rows.at(row)->row, row);
        }
        return shown;
    }

    VisibleRows m_rows;

private:
    std::uint32_t m_next = 0;
};

TEST_F(RowOrder, numbersGoByTheTasksIds)
{
    addNamed({QStringLiteral("c"), QStringLiteral("a"), QStringLiteral("b")});
    EXPECT_EQ(sorted(SortColumn::Name), (Ids{1, 2, 0}));
    EXPECT_EQ(sorted(SortColumn::Number), (Ids{0, 1, 2}));
    EXPECT_EQ(sorted(SortColumn::Number, SortDirection::Descending), (Ids{2, 1, 0}));
}

TEST_F(RowOrder, namesIgnoreCaseAndCountTheNumbersInThem)
{
    addNamed({QStringLiteral("part 10"), QStringLiteral("Part 9"), QStringLiteral("Zebra"),
              QStringLiteral("part 2"), QStringLiteral("apple")});
    EXPECT_EQ(sorted(SortColumn::Name), (Ids{4, 3, 1, 0, 2}));
    EXPECT_EQ(sorted(SortColumn::Name, SortDirection::Descending), (Ids{2, 0, 1, 3, 4}));
}

TEST_F(RowOrder, statusesGoFromDownloadingToCompleted)
{
    add().setState(TaskState::Completed);
    add().setState(TaskState::Failed);
    add().setState(TaskState::Stopped);
    add().setState(TaskState::Waiting);
    add().setState(TaskState::ResolvingPage);
    add().setState(TaskState::Downloading);
    add().setState(TaskState::TakingTitle);
    add().setState(TaskState::Started);
    EXPECT_EQ(sorted(SortColumn::Status), (Ids{5, 6, 4, 7, 3, 1, 2, 0}));
    EXPECT_EQ(sorted(SortColumn::Status, SortDirection::Descending), (Ids{0, 2, 1, 3, 7, 4, 6, 5}));
}

TEST_F(RowOrder, theDownloadNearestToItsEndComesFirst)
{
    for (const float percent : {1'000.F, 9'000.F, 5'000.F}) {
        TaskWorker &worker = add();
        worker.setState(TaskState::Downloading);
        worker.setProgress({.percentHundredths = percent});
    }
    EXPECT_EQ(sorted(SortColumn::Status), (Ids{1, 2, 0}));
}

TEST_F(RowOrder, aStoppedTaskWithItsWholeFileStandsAmongTheCompleted)
{
    TaskInfo whole;
    whole.dwSize = 10;
    whole.dwDownloadSize = 10;
    whole.bFileCreated = 1;
    add(whole).setState(TaskState::Stopped);
    add().setState(TaskState::Stopped);
    add().setState(TaskState::Completed);
    EXPECT_EQ(sorted(SortColumn::Status), (Ids{1, 0, 2}));
}

TEST_F(RowOrder, onlyDownloadsHaveASpeed)
{
    for (const double speed : {20.0, 5.0, 0.0, 99.0}) {
        TaskWorker &worker = add();
        worker.setState(TaskState::Downloading);
        worker.setProgress({.bytesPerSecond = speed});
    }
    m_rows.at(3)->worker->setState(TaskState::Stopped);
    EXPECT_EQ(sorted(SortColumn::Speed), (Ids{3, 2, 1, 0}));
    EXPECT_EQ(sorted(SortColumn::Speed, SortDirection::Descending), (Ids{0, 1, 2, 3}));
}

TEST_F(RowOrder, typesIgnoreCase)
{
    for (const char *type : {".mp4", ".FLV", ".flv", ".3gp"}) {
        TaskInfo record;
        record.strFileType = QString::fromLatin1(type);
        add(record);
    }
    EXPECT_EQ(sorted(SortColumn::Type), (Ids{3, 1, 2, 0}));
}

TEST_F(RowOrder, modesGoByMethodThenQuality)
{
    for (const auto &[method, quality] : {std::pair(6, 0), std::pair(0, 3), std::pair(0, 1)}) {
        TaskInfo record;
        record.nModeLow = method;
        record.nModeHigh = quality;
        add(record);
    }
    EXPECT_EQ(sorted(SortColumn::Mode), (Ids{2, 1, 0}));
}

TEST_F(RowOrder, equalTasksKeepTheirPlacesInBothDirections)
{
    addNamed({QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("a")});
    EXPECT_EQ(sorted(SortColumn::Name), (Ids{1, 3, 0, 2}));
    EXPECT_EQ(sorted(SortColumn::Type), (Ids{1, 3, 0, 2}));
    EXPECT_EQ(sorted(SortColumn::Type, SortDirection::Descending), (Ids{1, 3, 0, 2}));
    EXPECT_EQ(sorted(SortColumn::Name, SortDirection::Descending), (Ids{0, 2, 1, 3}));
}

TEST_F(RowOrder, withoutADirectionNothingMoves)
{
    addNamed({QStringLiteral("b"), QStringLiteral("a")});
    EXPECT_EQ(sorted(SortColumn::Name, SortDirection::None), (Ids{0, 1}));
}

TEST_F(RowOrder, anEmptyListCanBeSorted)
{
    EXPECT_EQ(sorted(SortColumn::Name), Ids{});
    EXPECT_EQ(sorted(SortColumn::Speed), Ids{});
}

TEST_F(RowOrder, newTasksStandAtTheEndOfASortedList)
{
    addNamed({QStringLiteral("b"), QStringLiteral("c")});
    EXPECT_EQ(sorted(SortColumn::Name, SortDirection::Descending), (Ids{1, 0}));
    addNamed({QStringLiteral("z")});
    EXPECT_EQ(ids(), (Ids{1, 0, 2}));
}

TEST_F(RowOrder, removedRowsLeaveTheOthersInOrder)
{
    addNamed({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")});
    const auto first = m_rows.at(0);
    const auto last = m_rows.at(3);
    m_rows.remove(*m_rows.at(1));
    EXPECT_EQ(ids(), (Ids{0, 2, 3}));
    m_rows.remove(std::vector{last, first});
    EXPECT_EQ(ids(), Ids{2});
    EXPECT_EQ(first->row, -1);
    m_rows.remove(*first);
    EXPECT_EQ(ids(), Ids{2});
}

TEST_F(RowOrder, rowsOutsideTheListHoldNothing)
{
    addNamed({QStringLiteral("a")});
    EXPECT_EQ(m_rows.at(-1), nullptr);
    EXPECT_EQ(m_rows.at(1), nullptr);
}

} // namespace
} // namespace tollivar::tasks
