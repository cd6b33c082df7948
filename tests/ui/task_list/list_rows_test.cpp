#include "tests/support/window_driver.h"
#include "tests/ui/task_list/list_fixture.h"

#include <QElapsedTimer>
#include <QScrollBar>

namespace tollivar::ui {
namespace {

using Ids = std::vector<std::uint32_t>;
using Rows = std::vector<int>;
using tasks::FileOnRemoval;
using tasks::SortColumn;
using tasks::SortDirection;

/// What stays when the rows change under the list.
class ListRowsTest : public ListTest {
protected:
    [[nodiscard]] int scrolled() const { return m_list->verticalScrollBar()->value(); }
};

TEST_F(ListRowsTest, theSelectionStaysWithItsTasksWhenTheyAreSorted)
{
    addMany(10);
    m_list->selectRows({1, 2, 8});
    const Ids before = selectedIds();
    m_manager->sort(SortColumn::Number, SortDirection::Descending);
    EXPECT_EQ(m_list->selectedRows(), (Rows{1, 7, 8}));
    Ids after = selectedIds();
    std::ranges::sort(after);
    EXPECT_EQ(after, before);
}

TEST_F(ListRowsTest, theSelectionStaysWithItsTasksWhenOthersAreRemoved)
{
    addMany(10);
    m_list->selectRows({4, 6});
    const Ids before = selectedIds();
    m_manager->removeTasks({0, 5}, FileOnRemoval::Keep);
    EXPECT_EQ(m_list->selectedRows(), (Rows{3, 4}));
    EXPECT_EQ(selectedIds(), before);
}

TEST_F(ListRowsTest, removedTasksLeaveTheSelection)
{
    addMany(5);
    m_list->selectRows({1, 3});
    m_manager->removeTasks({1}, FileOnRemoval::Keep);
    EXPECT_EQ(m_list->selectedRows(), Rows{2});
    m_manager->removeTasks({0, 1, 2, 3}, FileOnRemoval::Keep);
    EXPECT_TRUE(m_list->selectedRows().empty());
    add();
    EXPECT_TRUE(m_list->selectedRows().empty());
}

TEST_F(ListRowsTest, theSelectionComesBackToTasksThatAreStillShown)
{
    addMany(4);
    m_list->selectRows({1, 2});
    m_manager->setFilter(tasks::TaskFilter::Downloading);
    EXPECT_EQ(m_list->selectedRows(), (Rows{1, 2}));
    m_manager->setFilter(tasks::TaskFilter::Downloaded);
    EXPECT_TRUE(m_list->selectedRows().empty());
}

TEST_F(ListRowsTest, newTasksLeaveSelectionAndScrollAlone)
{
    addMany(100);
    show();
    m_list->selectRows({40, 41});
    m_list->verticalScrollBar()->setValue(1'234);
    addMany(5);
    EXPECT_EQ(m_list->selectedRows(), (Rows{40, 41}));
    EXPECT_EQ(scrolled(), 1'234);
    EXPECT_EQ(m_list->model()->rowCount(), 105);
}

TEST_F(ListRowsTest, theScrollPositionStaysWhenRowsComeAndGo)
{
    addMany(100);
    show();
    m_list->verticalScrollBar()->setValue(1'000);
    m_manager->removeTasks({0, 1, 99}, FileOnRemoval::Keep);
    EXPECT_EQ(scrolled(), 1'000);
    m_manager->sort(SortColumn::Number, SortDirection::Descending);
    EXPECT_EQ(scrolled(), 1'000);
}

TEST_F(ListRowsTest, aListThatGrewShortShowsItsEnd)
{
    addMany(100);
    show();
    m_list->verticalScrollBar()->setValue(m_list->verticalScrollBar()->maximum());
    Rows most;
    for (int row = 0; row < 80; ++row) {
        most.push_back(row);
    }
    m_manager->removeTasks(most, FileOnRemoval::Keep);
    EXPECT_EQ(scrolled(), m_list->verticalScrollBar()->maximum());
    EXPECT_EQ(scrolled(), 20 * m_list->rowHeight() - m_list->viewport()->height());
}

TEST_F(ListRowsTest, theKeysGoOnFromTheTaskTheyWereAt)
{
    addMany(10);
    show();
    m_list->selectRows({2});
    m_manager->sort(SortColumn::Number, SortDirection::Descending);
    EXPECT_EQ(m_list->currentIndex().row(), 7);
    test::press(*m_list, Qt::Key_Down);
    EXPECT_EQ(m_list->selectedRows(), Rows{8});
}

TEST_F(ListRowsTest, aSortDoesNotRunAfterTheCurrentTask)
{
    addMany(200);
    show();
    m_list->selectRows({0});
    m_manager->sort(SortColumn::Number, SortDirection::Descending);
    EXPECT_EQ(m_list->currentIndex().row(), 199);
    EXPECT_EQ(scrolled(), 0);
}

TEST_F(ListRowsTest, selectedRowsAreBroughtIntoView)
{
    addMany(200);
    show();
    m_list->selectRows({150, 151});
    const QRect last = m_list->visualRect(m_list->model()->index(151, 1));
    EXPECT_TRUE(m_list->viewport()->rect().contains(last.center()));
    EXPECT_EQ(m_list->selectedRows(), (Rows{150, 151}));
}

TEST_F(ListRowsTest, rowsThatAreNotThereAreNotSelected)
{
    addMany(3);
    m_list->selectRows({-1, 1, 7});
    EXPECT_EQ(m_list->selectedRows(), Rows{1});
    m_list->selectRows({});
    EXPECT_TRUE(m_list->selectedRows().empty());
}

TEST_F(ListRowsTest, thousandsOfScatteredSelectedRowsAreSortedWithoutDelay)
{
    constexpr int kTasks = 10'000;
    addMany(kTasks);
    show();
    Rows scattered;
    for (int row = 0; row < kTasks; row += 2) {
        scattered.push_back(row);
    }
    m_list->selectRows(scattered);
    QElapsedTimer clock;
    clock.start();
    m_manager->sort(SortColumn::Number, SortDirection::Descending);
    // 20 ms; comparing each range of the old selection with each of the new takes 25 million
    // steps. Sanitizers slow it down tenfold.
    EXPECT_LT(clock.elapsed(), 2'000);
    EXPECT_EQ(m_list->selectedRows().size(), scattered.size());
    EXPECT_EQ(m_list->selectedRows().front(), 1);
    RecordProperty("milliseconds", static_cast<int>(clock.elapsed()));
}

} // namespace
} // namespace tollivar::ui
