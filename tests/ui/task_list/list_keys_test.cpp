#include "tests/support/window_driver.h"
#include "tests/ui/task_list/list_fixture.h"

#include <QContextMenuEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

namespace tollivar::ui {
namespace {

using namespace Qt::StringLiterals;
using Rows = std::vector<int>;

/// What mouse and keyboard do to the list.
class ListKeysTest : public ListTest {
protected:
    void showTasks(int count)
    {
        addMany(count);
        show();
    }

    [[nodiscard]] QPoint middleOf(int row) const
    {
        return m_list->visualRect(m_list->model()->index(row, 1)).center();
    }

    void clickRow(int row, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, modifiers, middleOf(row));
    }

    void askForMenu(QContextMenuEvent::Reason reason, const QPoint &place)
    {
        QWidget *target = m_list->viewport();
        if (reason == QContextMenuEvent::Keyboard) {
            target = m_list.get();
        }
        QContextMenuEvent event(reason, place, target->mapToGlobal(place));
        QApplication::sendEvent(target, &event);
    }
};

TEST_F(ListKeysTest, clicksSelectRows)
{
    showTasks(5);
    clickRow(1);
    EXPECT_EQ(m_list->selectedRows(), Rows{1});
    clickRow(3, Qt::ControlModifier);
    EXPECT_EQ(m_list->selectedRows(), (Rows{1, 3}));
    clickRow(0, Qt::ShiftModifier);
    EXPECT_EQ(m_list->selectedRows(), (Rows{0, 1, 2, 3}));
    QTest::mouseClick(m_list->viewport(), Qt::LeftButton, {}, {20, 5 * m_list->rowHeight() + 20});
    EXPECT_TRUE(m_list->selectedRows().empty());
}

TEST_F(ListKeysTest, controlAndASelectsAll)
{
    showTasks(5);
    test::press(*m_list, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(m_list->selectedRows(), (Rows{0, 1, 2, 3, 4}));
}

TEST_F(ListKeysTest, arrowsHomeAndEndMoveAmongRows)
{
    showTasks(50);
    m_list->selectRows({10});
    test::press(*m_list, Qt::Key_Down);
    EXPECT_EQ(m_list->selectedRows(), Rows{11});
    test::press(*m_list, Qt::Key_End);
    EXPECT_EQ(m_list->selectedRows(), Rows{49});
    EXPECT_EQ(m_list->verticalScrollBar()->value(), m_list->verticalScrollBar()->maximum());
    test::press(*m_list, Qt::Key_Home);
    EXPECT_EQ(m_list->selectedRows(), Rows{0});
    test::press(*m_list, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(m_list->selectedRows(), (Rows{0, 1}));
    test::press(*m_list, Qt::Key_End, Qt::ShiftModifier);
    EXPECT_EQ(m_list->selectedRows().size(), 50U);
}

TEST_F(ListKeysTest, leftAndRightScrollAndKeepTheSelection)
{
    addMany(5);
    show({400, 300});
    m_list->selectRows({2});
    test::press(*m_list, Qt::Key_Right);
    EXPECT_GT(m_list->horizontalScrollBar()->value(), 0);
    EXPECT_EQ(m_list->selectedRows(), Rows{2});
    test::press(*m_list, Qt::Key_Left);
    EXPECT_EQ(m_list->horizontalScrollBar()->value(), 0);
}

TEST_F(ListKeysTest, keysInAnEmptyListDoNothing)
{
    show();
    QSignalSpy opened(m_list.get(), &CListCtrlEx::rowActivated);
    for (const Qt::Key key : {Qt::Key_Home, Qt::Key_End, Qt::Key_Up, Qt::Key_Down, Qt::Key_Left,
                              Qt::Key_PageDown, Qt::Key_Return, Qt::Key_A}) {
        test::press(*m_list, key);
    }
    EXPECT_EQ(opened.size(), 0);
    EXPECT_TRUE(m_list->selectedRows().empty());
}

TEST_F(ListKeysTest, spaceAsksForItsCommand)
{
    showTasks(3);
    QSignalSpy toggled(m_list.get(), &CListCtrlEx::toggleWanted);
    m_list->selectRows({1});
    test::press(*m_list, Qt::Key_Space);
    EXPECT_EQ(toggled.size(), 1);
    EXPECT_EQ(m_list->selectedRows(), Rows{1});
}

TEST_F(ListKeysTest, spaceWithControlSelectsTheFramedRow)
{
    showTasks(5);
    QSignalSpy toggled(m_list.get(), &CListCtrlEx::toggleWanted);
    m_list->selectRows({1});
    test::press(*m_list, Qt::Key_Down, Qt::ControlModifier);
    test::press(*m_list, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(m_list->selectedRows(), Rows{1});
    test::press(*m_list, Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(m_list->selectedRows(), (Rows{1, 3}));
    EXPECT_EQ(toggled.size(), 0);
}

TEST_F(ListKeysTest, aDoubleClickOpensTheTaskAndEnterDoesNot)
{
    showTasks(5);
    QSignalSpy opened(m_list.get(), &CListCtrlEx::rowActivated);
    QTest::mouseDClick(m_list->viewport(), Qt::LeftButton, {}, middleOf(2));
    m_list->selectRows({3});
    test::press(*m_list, Qt::Key_Return);
    test::press(*m_list, Qt::Key_Enter, Qt::KeypadModifier);
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(opened[0][0].toInt(), 2);
}

TEST_F(ListKeysTest, onlyTheLeftButtonOnARowOpens)
{
    showTasks(2);
    QSignalSpy opened(m_list.get(), &CListCtrlEx::rowActivated);
    QTest::mouseDClick(m_list->viewport(), Qt::RightButton, {}, middleOf(1));
    QTest::mouseDClick(m_list->viewport(), Qt::LeftButton, {}, {20, 2 * m_list->rowHeight() + 20});
    EXPECT_EQ(opened.size(), 0);
}

TEST_F(ListKeysTest, typingFindsATaskByItsName)
{
    for (const QString &name : {u"apple"_s, u"Banana"_s, u"cherry"_s, u"Blueberry"_s}) {
        tasks::TaskInfo record;
        record.strOutputName = name;
        add(record);
    }
    show();
    m_list->selectRows({0});
    QTest::keyClicks(m_list.get(), u"bl"_s);
    EXPECT_EQ(m_list->selectedRows(), Rows{3});
}

TEST_F(ListKeysTest, typedNumbersAreNamesToo)
{
    for (const QString &name : {u"one"_s, u"7 wonders"_s}) {
        tasks::TaskInfo record;
        record.strOutputName = name;
        add(record);
    }
    show();
    m_list->selectRows({0});
    QTest::keyClicks(m_list.get(), u"7"_s);
    EXPECT_EQ(m_list->selectedRows(), Rows{1});
}

TEST_F(ListKeysTest, theMenuComesWhereTheMouseIs)
{
    showTasks(3);
    m_list->selectRows({1});
    QSignalSpy wanted(m_list.get(), &CListCtrlEx::menuWanted);
    askForMenu(QContextMenuEvent::Mouse, middleOf(1));
    ASSERT_EQ(wanted.size(), 1);
    EXPECT_EQ(wanted[0][0].toPoint(), m_list->viewport()->mapToGlobal(middleOf(1)));
}

TEST_F(ListKeysTest, theMenuOfTheKeyboardComesAtTheSelectedRow)
{
    showTasks(3);
    m_list->selectRows({2});
    QSignalSpy wanted(m_list.get(), &CListCtrlEx::menuWanted);
    askForMenu(QContextMenuEvent::Keyboard, {0, 0});
    ASSERT_EQ(wanted.size(), 1);
    EXPECT_EQ(wanted[0][0].toPoint(), m_list->viewport()->mapToGlobal(middleOf(2)));
}

TEST_F(ListKeysTest, theMenuOfARowOutOfSightStaysOnTheList)
{
    showTasks(100);
    m_list->selectRows({90});
    m_list->verticalScrollBar()->setValue(0);
    QSignalSpy wanted(m_list.get(), &CListCtrlEx::menuWanted);
    askForMenu(QContextMenuEvent::Keyboard, {0, 0});
    ASSERT_EQ(wanted.size(), 1);
    const QPoint place = m_list->viewport()->mapFromGlobal(wanted[0][0].toPoint());
    EXPECT_TRUE(m_list->viewport()->rect().contains(place));
}

TEST_F(ListKeysTest, theMenuComesWithoutASelectionToo)
{
    showTasks(3);
    QSignalSpy wanted(m_list.get(), &CListCtrlEx::menuWanted);
    const QPoint below(20, 3 * m_list->rowHeight() + 20);
    askForMenu(QContextMenuEvent::Mouse, below);
    ASSERT_EQ(wanted.size(), 1);
    EXPECT_EQ(wanted[0][0].toPoint(), m_list->viewport()->mapToGlobal(below));
    askForMenu(QContextMenuEvent::Keyboard, below);
    EXPECT_EQ(wanted.size(), 2);
}

TEST_F(ListKeysTest, aRightClickSelectsTheRowUnlessItIsSelected)
{
    showTasks(5);
    m_list->selectRows({0, 1});
    QTest::mouseClick(m_list->viewport(), Qt::RightButton, {}, middleOf(1));
    EXPECT_EQ(m_list->selectedRows(), (Rows{0, 1}));
    QTest::mouseClick(m_list->viewport(), Qt::RightButton, {}, middleOf(3));
    EXPECT_EQ(m_list->selectedRows(), Rows{3});
}

} // namespace
} // namespace tollivar::ui
