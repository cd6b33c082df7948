#include "tests/ui/main_window/tollivar_dlg_fixture.h"

#include <QClipboard>
#include <QMenu>
#include <QRadioButton>
#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using tasks::TaskFilter;
using tasks::TaskState;
using testing::ElementsAre;

TEST_F(TollivarDlgTest, startsSelectedTasksAndQueuesTheRest)
{
    std::vector<std::uint32_t> ids;
    for (int i = 0; i < 6; ++i) {
        ids.push_back(m_world.add(QString::number(i)));
    }
    open();
    m_list->selectRows({0, 1, 2, 3, 4, 5});
    click(u"btnStart"_s);
    EXPECT_EQ(state(ids[4]), TaskState::Started);
    EXPECT_EQ(state(ids[5]), TaskState::Waiting);
    click(u"btnStop"_s);
    EXPECT_EQ(state(ids[5]), TaskState::Stopped);
}

TEST_F(TollivarDlgTest, cancellingTheQuestionStartsNothingAtAll)
{
    const auto open_ = m_world.add(u"a"_s);
    const auto done = m_world.addCompleted(u"b"_s);
    m_world.manager().setFilter(TaskFilter::None);
    m_world.manager().setFilter(TaskFilter::All);
    open();
    m_list->selectRows({0, 1});
    answer(QMessageBox::Cancel);
    click(u"btnStart"_s);
    EXPECT_EQ(state(open_), TaskState::New);
    EXPECT_EQ(state(done), TaskState::Completed);
}

TEST_F(TollivarDlgTest, refusingTheQuestionSkipsTheCompletedTasks)
{
    const auto done = m_world.addCompleted(u"b"_s);
    const auto open_ = m_world.add(u"a"_s);
    m_world.manager().setFilter(TaskFilter::None);
    m_world.manager().setFilter(TaskFilter::All);
    open();
    m_list->selectRows({0, 1});
    answer(QMessageBox::No);
    click(u"btnStart"_s);
    EXPECT_EQ(state(open_), TaskState::Started);
    EXPECT_EQ(state(done), TaskState::Completed);
}

TEST_F(TollivarDlgTest, completedTasksStartedFromTheirOwnViewAreSelectedAmongTheRunning)
{
    m_world.add(u"waiting"_s);
    m_world.addCompleted(u"first"_s);
    m_world.addCompleted(u"kept"_s);
    m_world.addCompleted(u"second"_s);
    open();
    click(u"btnDownloaded"_s);
    m_list->selectRows({0, 2});
    answer(QMessageBox::Yes);
    click(u"btnStart"_s);
    EXPECT_EQ(m_world.manager().filter(), TaskFilter::Downloading);
    EXPECT_THAT(names(), ElementsAre(u"waiting"_s, u"first"_s, u"second"_s));
    EXPECT_THAT(m_list->selectedRows(), ElementsAre(1, 2));
    EXPECT_TRUE(test::control<QToolButton>(m_world.window(), u"btnDownloading"_s)->isChecked());
    EXPECT_EQ(caption(u"btnDownloaded"_s), u"Downloaded (1)"_s);
}

TEST_F(TollivarDlgTest, startLeavesTheDownloadedOnesUnlessItIsCancelled)
{
    m_world.addCompleted(u"done"_s);
    open();
    const auto isShowing = [this](TaskFilter filter, const QString &name) {
        return m_world.manager().filter() == filter &&
               test::control<QToolButton>(m_world.window(), name)->isChecked();
    };
    for (const auto button : {QMessageBox::Cancel, QMessageBox::No}) {
        click(u"btnDownloaded"_s);
        m_list->selectRows({0});
        answer(button);
        click(u"btnStart"_s);
        EXPECT_EQ(isShowing(TaskFilter::Downloaded, u"btnDownloaded"_s),
                  button == QMessageBox::Cancel);
    }
    EXPECT_TRUE(isShowing(TaskFilter::Downloading, u"btnDownloading"_s));
    EXPECT_EQ(m_list->model()->rowCount(), 0);
    click(u"btnDownloaded"_s);
    m_list->clearSelection();
    click(u"btnStart"_s);
    EXPECT_TRUE(isShowing(TaskFilter::Downloading, u"btnDownloading"_s));
}

TEST_F(TollivarDlgTest, aCompletedTasksConversionEndsWhereTheTaskStartsAnew)
{
    const auto done = m_world.addCompleted(u"b"_s);
    open();
    click(u"btnDownloaded"_s);
    m_list->selectRows({0});
    answer(QMessageBox::No);
    click(u"btnStart"_s);
    EXPECT_THAT(m_world.stoppedConversions, ElementsAre());
    click(u"btnDownloaded"_s);
    m_list->selectRows({0});
    answer(QMessageBox::Yes);
    click(u"btnStart"_s);
    EXPECT_THAT(m_world.stoppedConversions, ElementsAre(done));
}

TEST_F(TollivarDlgTest, removesSelectedTasksAfterTheQuestion)
{
    m_world.add(u"a"_s);
    m_world.add(u"b"_s);
    m_world.add(u"c"_s);
    open();
    m_list->selectRows({0, 2});
    pressInDialog(u"btnCancel"_s);
    click(u"btnRemove"_s);
    EXPECT_EQ(names().size(), 3U);
    pressInDialog(u"btnOK"_s);
    click(u"btnRemove"_s);
    EXPECT_THAT(names(), ElementsAre(u"b"_s));
    EXPECT_EQ(caption(u"btnDownloading"_s), u"Downloading (1)"_s);
}

TEST_F(TollivarDlgTest, removingWithFilesDeletesThem)
{
    tasks::TaskInfo task;
    task.strOutputName = u"clip"_s;
    task.bFileCreated = 1;
    const QString file = m_world.sandbox().write(u"clip.flv"_s, "x");
    m_world.add(task);
    open();
    m_list->selectRows({0});
    test::whenModalOpens([](QWidget &dialog) {
        test::control<QRadioButton>(dialog, u"radioDelTaskAll"_s)->click();
        test::click(*test::control(dialog, u"btnOK"_s));
    });
    click(u"btnRemove"_s);
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(TollivarDlgTest, removingWithoutASelectionAsksNothing)
{
    m_world.add(u"a"_s);
    open();
    click(u"btnRemove"_s);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(TollivarDlgTest, clearsTheCompletedTasksAndKeepsTheirFiles)
{
    m_world.add(u"a"_s);
    m_world.addCompleted(u"b"_s);
    const QString file = m_world.sandbox().write(u"b.flv"_s, "x");
    open();
    answer(QMessageBox::No);
    click(u"btnClearAll"_s);
    EXPECT_EQ(m_world.manager().completedCount(), 1);
    answer(QMessageBox::Yes);
    click(u"btnClearAll"_s);
    EXPECT_EQ(m_world.manager().completedCount(), 0);
    EXPECT_EQ(m_world.manager().filter(), TaskFilter::Downloaded);
    EXPECT_TRUE(QFile::exists(file));
    click(u"btnAll"_s);
    EXPECT_THAT(names(), ElementsAre(u"a"_s));
}

TEST_F(TollivarDlgTest, allSelectedTasksAreWantedConvertedAtOnce)
{
    m_world.add(u"a"_s);
    m_world.add(u"b"_s);
    CTollivarDlg &window = open();
    std::vector<std::vector<QString>> wanted;
    QObject::connect(&window.selected(), &SelectedTasks::conversionWanted,
                     [&wanted](const std::vector<tasks::TaskInfo> &tasks) {
                         auto &names = wanted.emplace_back();
                         for (const tasks::TaskInfo &task : tasks) {
                             names.push_back(task.strOutputName);
                         }
                     });
    window.runCommand(language::commands::kConvert);
    EXPECT_TRUE(wanted.empty());
    m_list->selectRows({0, 1});
    window.runCommand(language::commands::kConvert);
    EXPECT_THAT(wanted, ElementsAre(ElementsAre(u"a"_s, u"b"_s)));
}

TEST_F(TollivarDlgTest, copiesTheAddressesOfTheSelectedTasks)
{
    tasks::TaskInfo task;
    task.strOriURL = u"http://a/1"_s;
    task.strDownloadUrl = u"http://cdn/1"_s;
    m_world.add(task);
    task.strOriURL = u"http://a/2"_s;
    m_world.add(task);
    CTollivarDlg &window = open();
    QSignalSpy copied(&window.selected(), &SelectedTasks::copied);
    m_list->selectRows({0, 1});
    window.runCommand(language::commands::kCopyWebAddress);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"http://a/1\r\nhttp://a/2\r\n"_s);
    EXPECT_EQ(copied.last()[0], u"http://a/1\r\nhttp://a/2\r\n"_s);
    window.runCommand(language::commands::kCopyFileAddress);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"http://cdn/1\r\nhttp://cdn/1\r\n"_s);
    m_list->clearSelection();
    window.runCommand(language::commands::kCopyWebAddress);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"http://cdn/1\r\nhttp://cdn/1\r\n"_s);
    EXPECT_EQ(copied.last()[0], QString());
}

TEST_F(TollivarDlgTest, theListsMenuConvertsFinishedTasksToAChosenProfile)
{
    const auto done = m_world.addCompleted(u"c"_s);
    m_world.add(u"a"_s);
    CTollivarDlg &window = open();
    click(u"btnDownloaded"_s);
    click(u"btnAll"_s);
    QSignalSpy wanted(&window.selected(), &SelectedTasks::profileWanted);
    const auto profilesOf = [this](const std::vector<int> &rows) {
        m_list->selectRows(rows);
        Q_EMIT m_list->menuWanted({});
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QMenu *profiles = menu->findChild<QMenu *>();
        menu->close();
        return profiles;
    };

    EXPECT_FALSE(profilesOf({0, 1})->isEnabled()) << "one of them is not finished";
    EXPECT_FALSE(profilesOf({})->isEnabled());

    QMenu *profiles = profilesOf({0});
    EXPECT_EQ(profiles->title(), u"Convert to"_s);
    ASSERT_EQ(profiles->actions().size(), 14);
    profiles->actions().front()->trigger();
    ASSERT_EQ(wanted.size(), 1);
    EXPECT_EQ(wanted[0][0].value<tasks::TaskInfo>().m_ConvOpts.m_csType, u".mp3"_s);
    EXPECT_EQ(wanted[0][1].toUInt(), done);
}

TEST_F(TollivarDlgTest, stopEndsTheConversionsOfTheSelectedFinishedTasks)
{
    m_world.add(u"a"_s);
    const auto first = m_world.addCompleted(u"b"_s);
    m_world.addCompleted(u"c"_s);
    open();
    click(u"btnDownloaded"_s);
    click(u"btnAll"_s);
    m_list->selectRows({0, 1});
    click(u"btnStop"_s);
    EXPECT_THAT(m_world.stoppedConversions, ElementsAre(first));
}

TEST_F(TollivarDlgTest, aTaskThatIsRemovedIsNotConvertedOn)
{
    m_world.add(u"a"_s);
    const auto selected = m_world.addCompleted(u"b"_s);
    const auto cleared = m_world.addCompleted(u"c"_s);
    open();
    click(u"btnDownloaded"_s);
    click(u"btnAll"_s);
    m_list->selectRows({0, 1});
    pressInDialog(u"btnCancel"_s);
    click(u"btnRemove"_s);
    EXPECT_TRUE(m_world.stoppedConversions.empty());
    pressInDialog(u"btnOK"_s);
    click(u"btnRemove"_s);
    EXPECT_THAT(m_world.stoppedConversions, ElementsAre(selected));
    answer(QMessageBox::Yes);
    click(u"btnClearAll"_s);
    EXPECT_THAT(m_world.stoppedConversions, ElementsAre(selected, cleared));
}

TEST_F(TollivarDlgTest, aDoubleClickPlaysItsRowWhicheverAreSelected)
{
    m_world.add(u"a"_s);
    m_world.add(u"b"_s);
    CTollivarDlg &window = open();
    QSignalSpy played(&window.selected(), &SelectedTasks::playerWanted);
    m_list->selectRows({0, 1});
    Q_EMIT m_list->rowActivated(1);
    ASSERT_EQ(played.size(), 1);
    EXPECT_EQ(played[0][0].toString(), m_world.manager().workerAt(1)->record().outputPath());
}

TEST_F(TollivarDlgTest, theListsMenuCopiesDetailsThatAreNotOfferedBack)
{
    m_world.add(u"a"_s);
    CTollivarDlg &window = open();
    m_list->selectRows({0});
    Q_EMIT m_list->menuWanted({});
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QAction *copy = menu->actions().last();
    menu->close();
    EXPECT_EQ(copy->text(), u"Copy Details"_s);
    copy->trigger();
    const QString copied = QGuiApplication::clipboard()->text();
    EXPECT_TRUE(copied.contains(u"Address: http://site.example/watch/a\n"_s))
        << copied.toStdString();
    window.intake().offerAddress(copied, AddressOrigin::Clipboard);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

} // namespace tollivar::ui
