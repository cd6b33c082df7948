#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"
#include "tests/ui/task_list/list_fixture.h"
#include "ui/task_list/header_ctrl_ex.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QToolTip>

namespace tollivar::ui {
namespace {

using namespace Qt::StringLiterals;
using tasks::SortColumn;
using tasks::SortDirection;
using tasks::TaskState;

const QColor kBack(241, 245, 250);
const QColor kFocused(61, 128, 223);
const QColor kUnfocused(236, 233, 216);

class ListCtrlExTest : public ListTest {
protected:
    [[nodiscard]] QColor colorAt(int x, int y)
    {
        return m_list->viewport()->grab().toImage().pixelColor(x, y);
    }

    /// A place in the row that has no text.
    [[nodiscard]] QColor colorOfRow(int row)
    {
        return colorAt(m_list->columnViewportPosition(3) + 2, row * m_list->rowHeight() + 2);
    }

    /// What the tool tip over a cell says after the mouse rested there; nothing when it says none.
    [[nodiscard]] QString toolTipOver(int row, int column)
    {
        QToolTip::hideText();
        test::waitUntil("no tool tip", [] { return !QToolTip::isVisible(); });
        const QPoint place = m_list->visualRect(m_list->model()->index(row, column)).center();
        QHelpEvent event(QEvent::ToolTip, place, m_list->viewport()->mapToGlobal(place));
        QApplication::sendEvent(m_list->viewport(), &event);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    }
};

TEST_F(ListCtrlExTest, rowsAreThreeLinesHigh)
{
    const QFontMetrics metrics(m_list->font());
    const int line = metrics.height() + std::max(0, metrics.leading());
    EXPECT_EQ(m_list->rowHeight(), 3 * line);
    add();
    EXPECT_EQ(m_list->rowHeight(), m_list->verticalHeader()->sectionSize(0));
}

TEST_F(ListCtrlExTest, anotherFontMakesOtherRows)
{
    add();
    QFont font = m_list->font();
    font.setPixelSize(30);
    m_list->setFont(font);
    EXPECT_EQ(m_list->rowHeight(), m_list->verticalHeader()->sectionSize(0));
    EXPECT_GE(m_list->rowHeight(), 90);
}

TEST_F(ListCtrlExTest, columnsHaveTheirWidthsAndHeadings)
{
    show({560, 300});
    const QStringList headings = {u"No."_s,   u"Name"_s,   u"Status"_s,
                                  u"Speed"_s, u"Target"_s, u"Download Mode"_s};
    const std::vector<int> widths = {40, 180, 150, 70, 60, 60};
    for (int column = 0; column < 6; ++column) {
        EXPECT_EQ(m_list->model()->headerData(column, Qt::Horizontal).toString(), headings[column]);
        EXPECT_EQ(m_list->columnWidth(column), widths[static_cast<std::size_t>(column)]);
    }
}

TEST_F(ListCtrlExTest, aWiderListHasWiderColumnsUntilAPersonDragsOne)
{
    show({800, 300});
    EXPECT_EQ(m_list->horizontalHeader()->length(), m_list->viewport()->width());
    m_list->setColumnWidth(1, 300);
    m_list->resize(1'000, 300);
    EXPECT_EQ(m_list->columnWidth(1), 300);
}

TEST_F(ListCtrlExTest, withoutAManagerItIsBlank)
{
    add();
    show();
    m_list->attach(nullptr);
    EXPECT_EQ(m_list->model()->rowCount(), 0);
    EXPECT_EQ(colorAt(100, 10), kBack);
    auto *hint = test::control<QToolButton>(*m_list, u"btnEmptyAdd"_s);
    EXPECT_FALSE(hint->isVisible());
    m_list->redrawRow(0);
    m_list->selectRows({0});
    EXPECT_TRUE(m_list->selectedRows().empty());
    EXPECT_EQ(m_list->textOf(0).number, u"1"_s);
}

TEST_F(ListCtrlExTest, followsTheManagersCountWheneverItIsAttached)
{
    m_manager->onRowsChanged({});
    addMany(3);
    EXPECT_EQ(m_list->model()->rowCount(), 0);
    m_list->attach(m_manager.get());
    EXPECT_EQ(m_list->model()->rowCount(), 3);
}

TEST_F(ListCtrlExTest, aSelectionEndsWithItsManager)
{
    addMany(3);
    m_list->selectRows({1});
    m_list->attach(nullptr);
    m_list->attach(m_manager.get());
    EXPECT_TRUE(m_list->selectedRows().empty());
}

TEST_F(ListCtrlExTest, everyPaintShowsTheTasksPresentState)
{
    tasks::TaskWorker &worker = add();
    EXPECT_EQ(m_list->textOf(0).status, u"Stopped"_s);
    worker.setState(TaskState::Downloading);
    worker.setProgress({.percentHundredths = 1'200});
    EXPECT_EQ(m_list->textOf(0).status, u"Downloading - 12.00%"_s);
}

TEST_F(ListCtrlExTest, aRetryIsPendingUpToTheSetting)
{
    tasks::TaskWorker &worker = add();
    worker.setState(TaskState::Downloading);
    worker.setState(TaskState::Failed);
    worker.setFailure({.kind = tasks::ErrorKind::Network});
    worker.setRetryAttempt(2);
    EXPECT_EQ(m_list->textOf(0).detail, u" - Network Error"_s);
    m_list->setRetrySetting(2);
    EXPECT_EQ(m_list->textOf(0).detail, u"Wait 5 secs before retry (2)"_s);
    m_list->setRetrySetting(1);
    EXPECT_EQ(m_list->textOf(0).detail, u" - Network Error"_s);
}

TEST_F(ListCtrlExTest, asksWhatAConversionAddsToARow)
{
    tasks::TaskWorker &worker = add();
    worker.setState(TaskState::Completed);
    m_list->onConversion([&worker](std::uint32_t id) {
        EXPECT_EQ(id, worker.taskId());
        return CListCtrlEx::Conversion{.percent = 33};
    });
    EXPECT_EQ(m_list->textOf(0).status, u"Converting - 33%"_s);
}

TEST_F(ListCtrlExTest, theSelectionIsColouredByTheFocus)
{
    addMany(2);
    show();
    m_list->selectRows({0});
    EXPECT_EQ(colorOfRow(0), kFocused);
    EXPECT_EQ(colorOfRow(1), kBack);
    m_list->clearFocus();
    EXPECT_EQ(colorOfRow(0), kUnfocused);
}

TEST_F(ListCtrlExTest, outsideTheRowsIsTheListsColour)
{
    addMany(2);
    show({560, 400});
    m_list->setColumnWidth(1, 60);
    EXPECT_EQ(colorAt(500, 10), kBack);
    EXPECT_EQ(colorAt(10, 2 * m_list->rowHeight() + 20), kBack);
}

/// Collects what is painted of a list.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(CListCtrlEx &list) { list.viewport()->installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            m_painted += static_cast<QPaintEvent *>(event)->region();
        }
        return false;
    }

    [[nodiscard]] QRegion take()
    {
        QApplication::processEvents();
        return std::exchange(m_painted, {});
    }

private:
    QRegion m_painted;
};

TEST_F(ListCtrlExTest, onlyTheChangedRowIsRepainted)
{
    addMany(100);
    show();
    PaintCounter counter(*m_list);
    static_cast<void>(counter.take());
    m_list->redrawRow(2);
    const int height = m_list->rowHeight();
    EXPECT_EQ(counter.take().boundingRect(),
              QRect(0, 2 * height, m_list->viewport()->width(), height));
    m_list->redrawRow(90);
    EXPECT_TRUE(counter.take().isEmpty());
    m_list->redrawRow(-1);
    m_list->redrawRow(100);
    EXPECT_TRUE(counter.take().isEmpty());
}

TEST_F(ListCtrlExTest, aRowScrolledHalfwayOutIsRepaintedWhereItStands)
{
    addMany(100);
    show();
    const int height = m_list->rowHeight();
    m_list->verticalScrollBar()->setValue(10 * height + 7);
    PaintCounter counter(*m_list);
    static_cast<void>(counter.take());
    m_list->redrawRow(10);
    EXPECT_EQ(counter.take().boundingRect(), QRect(0, 0, m_list->viewport()->width(), height - 7));
}

TEST_F(ListCtrlExTest, clicksOnTheHeaderSortTheTasks)
{
    addMany(12);
    show();
    const auto clickName = [this] {
        QWidget &header = *m_list->horizontalHeader()->viewport();
        test::clickAt(header, {m_list->columnViewportPosition(1) + 50, header.height() / 2});
    };
    const auto firstAndLast = [this] {
        return std::pair(m_list->textOf(0).name, m_list->textOf(11).name);
    };
    clickName();
    EXPECT_EQ(firstAndLast(), std::pair(u"clip 0"_s, u"clip 11"_s));
    clickName();
    EXPECT_EQ(firstAndLast(), std::pair(u"clip 11"_s, u"clip 0"_s));
}

TEST_F(ListCtrlExTest, theArrowGoesWhenAFilterEndsTheOrder)
{
    addMany(3);
    const auto *header = dynamic_cast<CHeaderCtrlEx *>(m_list->horizontalHeader());
    ASSERT_NE(header, nullptr);
    m_manager->sort(SortColumn::Name, SortDirection::Descending);
    EXPECT_EQ(header->sortDirection(), SortDirection::Descending);
    EXPECT_EQ(header->sortColumn(), 1);
    m_manager->setFilter(tasks::TaskFilter::Downloading);
    EXPECT_EQ(header->sortDirection(), SortDirection::None);
}

TEST_F(ListCtrlExTest, anEmptyListSaysWhatToDo)
{
    show();
    auto *button = test::control<QToolButton>(*m_list, u"btnEmptyAdd"_s);
    ASSERT_TRUE(button->isVisible());
    EXPECT_EQ(button->text(), u"Add URL"_s);
    int wanted = 0;
    QObject::connect(m_list.get(), &CListCtrlEx::addWanted, m_list.get(), [&wanted] { ++wanted; });
    test::click(*button);
    EXPECT_EQ(wanted, 1);
    add();
    EXPECT_FALSE(button->isVisible());
    m_manager->removeTask(0, tasks::FileOnRemoval::Keep);
    EXPECT_TRUE(button->isVisible());
}

TEST_F(ListCtrlExTest, anEmptyGroupOfTasksSaysThatItIsEmpty)
{
    show();
    auto *button = test::control<QToolButton>(*m_list, u"btnEmptyAdd"_s);
    const auto *hint = button->parentWidget()->findChild<QLabel *>();
    m_manager->setFilter(tasks::TaskFilter::Downloaded);
    EXPECT_TRUE(button->isVisible()) << "there is no task at all";
    add();
    m_manager->setFilter(tasks::TaskFilter::Downloaded);
    m_list->refreshRows();
    ASSERT_EQ(m_list->model()->rowCount(), 0);
    EXPECT_TRUE(hint->isVisible());
    EXPECT_EQ(hint->text(), u"Nothing downloaded yet"_s);
    EXPECT_FALSE(button->isVisible());
    m_manager->setFilter(tasks::TaskFilter::Downloading);
    m_list->refreshRows();
    EXPECT_FALSE(hint->isVisible());
    m_manager->removeTask(0, tasks::FileOnRemoval::Keep);
    EXPECT_TRUE(button->isVisible());
    tasks::TaskInfo done;
    done.nCompletedStatus = 1;
    add(done);
    m_manager->setFilter(tasks::TaskFilter::Downloading);
    m_list->refreshRows();
    EXPECT_EQ(hint->text(), u"Nothing is being downloaded"_s);
    EXPECT_FALSE(button->isVisible());
}

TEST_F(ListCtrlExTest, theHintStaysInTheMiddle)
{
    show({560, 400});
    const auto *hint = test::control<QToolButton>(*m_list, u"btnEmptyAdd"_s)->parentWidget();
    const auto isCentered = [&] {
        const QPoint off = hint->geometry().center() - m_list->viewport()->rect().center();
        return std::abs(off.x()) <= 1 && std::abs(off.y()) <= 1;
    };
    EXPECT_TRUE(isCentered());
    m_list->resize(900, 300);
    EXPECT_TRUE(isCentered());
}

TEST_F(ListCtrlExTest, anotherLanguageReachesHeadingsHintAndRows)
{
    QString word = u"one"_s;
    CListCtrlEx list([&word](const QString &) { return word; });
    add().setState(TaskState::Waiting);
    list.attach(m_manager.get());
    EXPECT_EQ(list.model()->headerData(2, Qt::Horizontal).toString(), u"one"_s);
    EXPECT_EQ(list.textOf(0).status, u"one"_s);
    word = u"two"_s;
    list.applyLanguage();
    EXPECT_EQ(list.model()->headerData(2, Qt::Horizontal).toString(), u"two"_s);
    EXPECT_EQ(list.textOf(0).status, u"two"_s);
    EXPECT_EQ(list.accessibleName(), u"two"_s);
    EXPECT_EQ(test::control<QToolButton>(list, u"btnEmptyAdd"_s)->text(), u"two"_s);
}

TEST_F(ListCtrlExTest, readersHearWhatTheCellsShow)
{
    tasks::TaskInfo record;
    record.strOutputName = u"a song"_s;
    record.strFileType = u".mp3"_s;
    record.dwSize = 2U << 20U;
    add(record).setState(TaskState::Waiting);
    EXPECT_EQ(m_list->accessibleName(), u"Tasks"_s);
    const QStringList cells = {u"1"_s,    u"a song\n0.00MB/2.00MB"_s, u"Waiting"_s, QString(),
                               u".MP3"_s, u"Download Video"_s};
    const auto read = [this](int column, int role) {
        return m_list->model()->index(0, column).data(role).toString();
    };
    for (int column = 0; column < 6; ++column) {
        EXPECT_EQ(read(column, Qt::AccessibleTextRole).trimmed(), cells[column]) << column;
        EXPECT_EQ(read(column, Qt::DisplayRole).trimmed(), cells[column]) << column;
    }
}

TEST_F(ListCtrlExTest, aToolTipTellsThePathOfACutName)
{
    tasks::TaskInfo record;
    record.strOutputFolder = u"/videos/"_s;
    record.strOutputName = u"a name that is far too long for its narrow column in this list"_s;
    add(record);
    add();
    show({560, 300});
    EXPECT_TRUE(toolTipOver(0, 1).contains(record.outputPath())) << toolTipOver(0, 1).toStdString();
    EXPECT_EQ(toolTipOver(1, 1), QString());
    EXPECT_EQ(toolTipOver(0, 4), QString());
}

TEST_F(ListCtrlExTest, aNameThatLooksLikeMarkupIsShownAsItIs)
{
    tasks::TaskInfo record;
    record.strOutputName = u"<img src='file:///etc/passwd'><b>"_s + QString(80, u'x');
    add(record);
    show({560, 300});
    const QString tip = toolTipOver(0, 1);
    EXPECT_FALSE(tip.isEmpty());
    EXPECT_FALSE(tip.contains(u"<img"_s)) << tip.toStdString();
    EXPECT_TRUE(tip.contains(u"&lt;img"_s)) << tip.toStdString();
}

TEST_F(ListCtrlExTest, whatIsDraggedOverItBelongsToTheWindow)
{
    show();
    EXPECT_FALSE(m_list->acceptDrops());
    EXPECT_FALSE(m_list->viewport()->acceptDrops());
    EXPECT_FALSE(m_list->dragEnabled());
}

} // namespace
} // namespace tollivar::ui
