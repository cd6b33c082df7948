#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"
#include "tests/ui/window_world.h"
#include "ui/main_window/tollivar_dlg.h"
#include "ui/skin/text_ui.h"

#include <QClipboard>
#include <QDir>
#include <QDragEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using tasks::TaskFilter;
using tasks::TaskState;
using testing::ElementsAre;

class TollivarDlgTest : public ::testing::Test {
protected:
    CTollivarDlg &open()
    {
        CTollivarDlg &window = m_world.open();
        m_list = window.findChild<CListCtrlEx *>();
        return window;
    }

    void click(const QString &name) { test::click(*test::control(m_world.window(), name)); }
    QString caption(const QString &name)
    {
        return test::control<QToolButton>(m_world.window(), name)->text();
    }
    TaskState state(std::uint32_t id) { return m_world.manager().worker(id)->state(); }

    /// Answers the next question box.
    static void answer(QMessageBox::StandardButton button)
    {
        test::whenModalOpens(
            [button](QWidget &box) { qobject_cast<QMessageBox *>(&box)->button(button)->click(); });
    }
    /// Presses a button of the next dialog.
    static void pressInDialog(const QString &button)
    {
        test::whenModalOpens(
            [button](QWidget &dialog) { test::click(*test::control(dialog, button)); });
    }
    /// One medium of a page stands in the next captured text.
    void setCaptured(const QString &title)
    {
        CapturedMedia media;
        media.task.strOriURL = u"http://site.example/page"_s;
        media.title = title;
        m_world.captured = {media};
    }
    std::vector<QString> names()
    {
        std::vector<QString> shown;
        for (int row = 0; row < m_world.manager().visibleCount(); ++row) {
            shown.push_back(m_world.manager().workerAt(row)->record().strOutputName);
        }
        return shown;
    }

    test::WindowWorld m_world;
    CListCtrlEx *m_list = nullptr;
};

TEST_F(TollivarDlgTest, captionsTellHowManyTasksAreInEachGroup)
{
    m_world.add(u"a"_s);
    m_world.add(u"b"_s);
    m_world.addCompleted(u"c"_s);
    open();
    EXPECT_EQ(caption(u"btnAll"_s), u"All"_s);
    EXPECT_EQ(caption(u"btnDownloading"_s), u"Downloading (2)"_s);
    EXPECT_EQ(caption(u"btnDownloaded"_s), u"Downloaded (1)"_s);
}

TEST_F(TollivarDlgTest, theFilterButtonsShowTheirTasks)
{
    m_world.add(u"a"_s);
    m_world.addCompleted(u"c"_s);
    open();
    click(u"btnDownloaded"_s);
    EXPECT_THAT(names(), ElementsAre(u"c"_s));
    click(u"btnDownloading"_s);
    EXPECT_THAT(names(), ElementsAre(u"a"_s));
    click(u"btnAll"_s);
    EXPECT_THAT(names(), ElementsAre(u"a"_s, u"c"_s));
    EXPECT_EQ(m_list->model()->rowCount(), 2);
}

TEST_F(TollivarDlgTest, aPendingAddressBecomesATaskWithoutADialog)
{
    CTollivarDlg &window = open();
    window.addAddress(u"http://a/12345678"_s);
    test::waitUntil("the task", [this] { return m_world.manager().visibleCount() == 1; });
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(names().front(), u"12345678"_s);
    EXPECT_TRUE(tasks::isRunning(m_world.manager().workerAt(0)->state()));
    EXPECT_EQ(caption(u"btnDownloading"_s), u"Downloading (1)"_s);
}

TEST_F(TollivarDlgTest, anEmptyPendingAddressAddsNothing)
{
    CTollivarDlg &window = open();
    window.addAddress({});
    window.addAddress(u"http://a/b"_s);
    test::waitUntil("the second", [this] { return m_world.manager().visibleCount() > 0; });
    EXPECT_EQ(m_world.manager().visibleCount(), 1);
}

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

TEST_F(TollivarDlgTest, aCapturedMediumIsOfferedAndKeptInItsOwnFolder)
{
    CTollivarDlg &window = open();
    tasks::TaskInfo media;
    media.strOriURL = u"http://site.example/page"_s;
    media.strDownloadUrl = u"http://cdn.example/x.mp4"_s;
    media.strFileType = u".mp4"_s;
    media.nModeLow = 6;
    media.strCookies = u"k=v"_s;
    m_world.captured = {{media, u"Evening: concert"_s}};
    test::whenModalOpens([](QWidget &dialog) {
        EXPECT_EQ(test::control<QLineEdit>(dialog, u"editURL"_s)->text(),
                  u"http://site.example/page"_s);
        test::click(*test::control(dialog, u"btnDownload"_s));
    });
    window.addCapturedText(u"whatever"_s);
    test::waitUntil("the task", [this] { return m_world.manager().visibleCount() == 1; });
    const auto task = m_world.manager().workerAt(0)->record();
    EXPECT_EQ(task.strOutputFolder, m_world.sandbox().path() + u"/Evening- concert/"_s);
    EXPECT_TRUE(QDir(task.strOutputFolder).exists());
    EXPECT_EQ(task.strDownloadUrl, u"http://cdn.example/x.mp4"_s);
    EXPECT_EQ(task.strCookies, u"k=v"_s);
    EXPECT_EQ(task.nModeLow, 6);
    EXPECT_EQ(task.bAutoRename, 1);
    EXPECT_EQ(task.strFileType, u".mp4"_s);
}

TEST_F(TollivarDlgTest, aCancelledMediumIsSkippedAndTheNextIsOffered)
{
    CTollivarDlg &window = open();
    tasks::TaskInfo media;
    media.strDownloadUrl = u"http://cdn.example/x.mp4"_s;
    media.strOriURL = u"http://a/1"_s;
    m_world.captured = {{media, u"one"_s}, {media, u"two"_s}};
    bool second = false;
    test::whenModalOpens([&second](QWidget &dialog) {
        if (test::control<QLineEdit>(dialog, u"editFileName"_s)->text() == u"one"_s) {
            test::click(*test::control(dialog, u"btnCancel"_s));
        }
        test::whenModalOpens([&second](QWidget &next) {
            second = test::control<QLineEdit>(next, u"editFileName"_s)->text() == u"two"_s;
            test::click(*test::control(next, u"btnCancel"_s));
        });
    });
    window.addCapturedText(u"whatever"_s);
    test::waitUntil("the second dialog", [&second] { return second; });
    EXPECT_EQ(m_world.manager().visibleCount(), 0);
}

TEST_F(TollivarDlgTest, anAddressThatALockedDialogCannotTakeIsOfferedAfterIt)
{
    CTollivarDlg &window = open();
    setCaptured(u"concert"_s);
    QString offered;
    test::whenModalOpens([&](QWidget &locked) {
        window.offerAddress(u"http://second/"_s, AddressOrigin::Dropped);
        EXPECT_EQ(test::control<QLineEdit>(locked, u"editURL"_s)->text(),
                  u"http://site.example/page"_s);
        test::click(*test::control(locked, u"btnCancel"_s));
        test::whenModalOpens([&offered](QWidget &next) {
            offered = test::control<QLineEdit>(next, u"editURL"_s)->text();
            test::click(*test::control(next, u"btnCancel"_s));
        });
    });
    window.addCapturedText(u"whatever"_s);
    test::waitUntil("the second dialog", [&offered] { return !offered.isEmpty(); });
    EXPECT_EQ(offered, u"http://second/"_s);
}

TEST_F(TollivarDlgTest, anAddressThatComesWhileACapturedMediumIsRefusedIsNotLost)
{
    CTollivarDlg &window = open();
    // No folder can be made where a file of that name stands.
    m_world.sandbox().write(u"concert"_s, "x");
    setCaptured(u"concert"_s);
    QString offered;
    test::whenModalOpens([&](QWidget &locked) {
        test::click(*test::control(locked, u"btnDownload"_s));
        test::whenModalOpens([&](QWidget &warning) {
            test::whenModalOpens([&offered](QWidget &next) {
                offered = test::control<QLineEdit>(next, u"editURL"_s)->text();
                test::click(*test::control(next, u"btnCancel"_s));
            });
            window.offerAddress(u"http://second/"_s, AddressOrigin::Dropped);
            warning.close();
        });
    });
    window.addCapturedText(u"whatever"_s);
    test::waitUntil("the second dialog", [&offered] { return !offered.isEmpty(); });
    EXPECT_EQ(offered, u"http://second/"_s);
    test::waitUntil("the end of all", [] { return QApplication::activeModalWidget() == nullptr; });
    EXPECT_EQ(m_world.manager().visibleCount(), 0);
}

TEST_F(TollivarDlgTest, aChosenLanguageIsSeenInTheFlashNoteToo)
{
    m_world.wantsFlashNote = true;
    open();
    const auto *note = test::control<DuiLib::CTextUI>(m_world.window(), u"textCaption"_s);
    EXPECT_TRUE(note->markup().contains(u"too old"_s)) << note->markup().toStdString();
    m_world.texts().applyLanguage(u"Deutsch"_s);
    EXPECT_EQ(note->markup(), m_world.languages().text(u"strNoteFlashOld"_s));
    EXPECT_FALSE(note->markup().contains(u"too old"_s));
}

TEST_F(TollivarDlgTest, allSelectedTasksAreWantedConvertedAtOnce)
{
    m_world.add(u"a"_s);
    m_world.add(u"b"_s);
    CTollivarDlg &window = open();
    std::vector<std::vector<QString>> wanted;
    QObject::connect(&window, &CTollivarDlg::conversionWanted,
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

TEST_F(TollivarDlgTest, theTrayMenuBringsTheWindowInFrontFirst)
{
    CTollivarDlg &window = open();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    const auto openTrayMenu = [] {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            auto *menu = qobject_cast<QMenu *>(widget);
            if (menu != nullptr && !menu->isEmpty() &&
                menu->actions().front()->data() == language::commands::kToggleWindow) {
                Q_EMIT menu->aboutToShow();
            }
        }
    };
    openTrayMenu();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    window.hide();
    openTrayMenu();
    EXPECT_FALSE(window.isVisible()) << "in the tray it stays there";
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
    m_list->selectRows({0, 1});
    window.runCommand(language::commands::kCopyWebAddress);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"http://a/1\r\nhttp://a/2\r\n"_s);
    EXPECT_EQ(window.copiedText(), u"http://a/1\r\nhttp://a/2\r\n"_s);
    window.runCommand(language::commands::kCopyFileAddress);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"http://cdn/1\r\nhttp://cdn/1\r\n"_s);
    m_list->clearSelection();
    window.runCommand(language::commands::kCopyWebAddress);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"http://cdn/1\r\nhttp://cdn/1\r\n"_s);
    EXPECT_EQ(window.copiedText(), QString());
}

TEST_F(TollivarDlgTest, aCopiedAddressOfOurOwnIsNotOfferedBack)
{
    tasks::TaskInfo task;
    task.strOriURL = u"http://a/1"_s;
    m_world.add(task);
    CTollivarDlg &window = open();
    m_list->selectRows({0});
    window.runCommand(language::commands::kCopyWebAddress);
    window.offerAddress(u"http://a/1"_s, AddressOrigin::Clipboard);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    bool opened = false;
    test::whenModalOpens([&opened](QWidget &dialog) {
        opened = true;
        test::click(*test::control(dialog, u"btnCancel"_s));
    });
    window.offerAddress(u"http://a/1"_s, AddressOrigin::Dropped);
    EXPECT_TRUE(opened);
}

TEST_F(TollivarDlgTest, aSecondAddressGoesIntoTheDialogThatIsOpen)
{
    CTollivarDlg &window = open();
    test::whenModalOpens([&window](QWidget &dialog) {
        window.offerAddress(u"http://second/"_s, AddressOrigin::Dropped);
        EXPECT_EQ(test::control<QLineEdit>(dialog, u"editURL"_s)->text(), u"http://second/"_s);
        test::click(*test::control(dialog, u"btnCancel"_s));
    });
    window.offerAddress(u"http://first/"_s, AddressOrigin::Dropped);
}

TEST_F(TollivarDlgTest, completionIsToldOnceAndMovesTheCaptions)
{
    const auto id = m_world.add(u"a"_s);
    CTollivarDlg &window = open();
    QSignalSpy completed(&window, &CTollivarDlg::taskCompleted);
    m_world.manager().start(id);
    m_world.end(id, tasks::TaskEventCode::Completed);
    EXPECT_EQ(completed.count(), 1);
    EXPECT_EQ(caption(u"btnDownloading"_s), u"Downloading (0)"_s);
    EXPECT_EQ(caption(u"btnDownloaded"_s), u"Downloaded (1)"_s);
}

TEST_F(TollivarDlgTest, closingHidesItAndTellsAboutTheTrayOnTheFirstThreeTimes)
{
    CTollivarDlg &window = open();
    for (int close = 1; close <= 5; ++close) {
        if (close == 1) {
            answer(QMessageBox::Ok);
        }
        click(u"btnClose"_s);
        EXPECT_EQ(m_world.settings().GetTrayInfoShowTime(), std::min(close, 3));
        window.showAndActivate();
    }
}

TEST_F(TollivarDlgTest, withoutATrayClosingMinimisesAndSaysSoOnce)
{
    CTollivarDlg &window = open();
    answer(QMessageBox::Ok);
    window.close();
    EXPECT_TRUE(window.isMinimized());
    window.showAndActivate();
    EXPECT_FALSE(window.isMinimized());
    window.close();
    EXPECT_TRUE(window.isMinimized());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(TollivarDlgTest, tellsWhenItBecomesAnIconAndWhenItIsNoneAnyMore)
{
    CTollivarDlg &window = open();
    std::vector<bool> told;
    QObject::connect(&window, &CTollivarDlg::minimisedChanged,
                     [&told](bool isMinimised) { told.push_back(isMinimised); });
    click(u"btnMin"_s);
    EXPECT_THAT(told, ElementsAre(true));
    window.showAndActivate();
    EXPECT_THAT(told, ElementsAre(true, false));
    window.showMaximized();
    EXPECT_THAT(told, ElementsAre(true, false));
    window.showMinimized();
    window.hide();
    EXPECT_THAT(told, ElementsAre(true, false, true, false));
}

TEST_F(TollivarDlgTest, tellsHowFarAllDownloadsTogetherAre)
{
    const std::uint32_t first = m_world.add(u"a"_s);
    const std::uint32_t second = m_world.add(u"b"_s);
    CTollivarDlg &window = open();
    std::optional<double> share;
    QObject::connect(&window, &CTollivarDlg::totalProgressChanged,
                     [&share](std::optional<double> told) { share = told; });
    for (const std::uint32_t id : {first, second}) {
        m_world.manager().start(id);
        m_world.worker(id).enterStage(TaskState::Downloading);
        m_world.worker(id).setProgress({.percentHundredths = 5'000});
    }
    test::waitUntil("half of it", [&] { return share == 0.5; });
    m_world.end(first, tasks::TaskEventCode::Completed);
    test::waitUntil("the whole of one, half of the other", [&] { return share == 0.75; });
    m_world.end(second, tasks::TaskEventCode::Completed);
    test::waitUntil("nothing to tell", [&] { return !share; });
}

TEST_F(TollivarDlgTest, exitIsWantedByItsButtonAlone)
{
    CTollivarDlg &window = open();
    QSignalSpy exit(&window, &CTollivarDlg::exitWanted);
    click(u"btnExit"_s);
    EXPECT_EQ(exit.count(), 1);
}

TEST_F(TollivarDlgTest, theHelpMenuAsksForTheGuideAndTheHomePage)
{
    CTollivarDlg &window = open();
    QSignalSpy help(&window, &CTollivarDlg::helpWanted);
    QSignalSpy home(&window, &CTollivarDlg::homePageWanted);
    window.runCommand(language::commands::kHelp);
    EXPECT_EQ(help.count(), 1);
    EXPECT_EQ(home.count(), 0);
    window.runCommand(language::commands::kHomePage);
    EXPECT_EQ(help.count(), 1);
    EXPECT_EQ(home.count(), 1);
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    test::press(window, Qt::Key_F1);
    EXPECT_EQ(help.count(), 2);
}

TEST_F(TollivarDlgTest, maximisingSwapsTheButtons)
{
    CTollivarDlg &window = open();
    click(u"btnMax"_s);
    EXPECT_TRUE(window.isMaximized());
    EXPECT_FALSE(test::control(window, u"btnMax"_s)->isVisible());
    EXPECT_TRUE(test::control(window, u"btnRestore"_s)->isVisible());
    click(u"btnRestore"_s);
    EXPECT_FALSE(window.isMaximized());
    EXPECT_TRUE(test::control(window, u"btnMax"_s)->isVisible());
}

TEST_F(TollivarDlgTest, keysDoWhatButtonsDo)
{
    const auto id = m_world.add(u"a"_s);
    CTollivarDlg &window = open();
    m_list->setFocus();
    test::press(*m_list, Qt::Key_A, Qt::ControlModifier);
    EXPECT_THAT(m_list->selectedRows(), ElementsAre(0));
    test::press(*m_list, Qt::Key_Space);
    EXPECT_EQ(state(id), TaskState::Started);
    test::press(*m_list, Qt::Key_Space);
    EXPECT_EQ(state(id), TaskState::Stopping);
    pressInDialog(u"btnOK"_s);
    test::press(*m_list, Qt::Key_Delete);
    EXPECT_EQ(m_world.manager().visibleCount(), 0);
    EXPECT_TRUE(window.isVisible());
}

TEST_F(TollivarDlgTest, takesDroppedAddressesAndRefusesFiles)
{
    CTollivarDlg &window = open();
    const auto isTaken = [&window](const QMimeData &data) {
        QDragEnterEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&window, &event);
        return event.isAccepted();
    };
    QMimeData text;
    text.setText(u"http://a/"_s);
    EXPECT_TRUE(isTaken(text));
    QMimeData file;
    file.setUrls({QUrl::fromLocalFile(u"/etc/hosts"_s)});
    file.setText(u"file:///etc/hosts"_s);
    EXPECT_FALSE(isTaken(file));
    EXPECT_FALSE(isTaken(QMimeData()));
}

TEST_F(TollivarDlgTest, everyControlHasANameForScreenReaders)
{
    const CTollivarDlg &window = open();
    const auto buttons = window.findChildren<QToolButton *>();
    for (const QToolButton *button : buttons) {
        EXPECT_FALSE(button->accessibleName().isEmpty() && button->text().isEmpty())
            << button->objectName().toStdString();
    }
    EXPECT_EQ(m_list->accessibleName(), u"Tasks"_s);
}

TEST_F(TollivarDlgTest, theListsMenuConvertsFinishedTasksToAChosenProfile)
{
    const auto done = m_world.addCompleted(u"c"_s);
    m_world.add(u"a"_s);
    CTollivarDlg &window = open();
    click(u"btnDownloaded"_s);
    click(u"btnAll"_s);
    QSignalSpy wanted(&window, &CTollivarDlg::profileWanted);
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

TEST_F(TollivarDlgTest, aRecordThatWasChosenQuicklyBecomesATaskWithoutADialog)
{
    CTollivarDlg &window = open();
    CapturedMedia media;
    media.task.strOriURL = u"http://site.example/watch"_s;
    media.task.strDownloadUrl = u"http://media.example/clip.mp4"_s;
    media.task.strFileType = u".mp4"_s;
    media.title = u"Harbour"_s;
    m_world.captured = {media};
    m_world.settings().SetLastFolder(m_world.sandbox().path());
    window.addCapturedRecord(u"the record"_s);
    ASSERT_EQ(m_world.manager().visibleCount(), 1);
    const tasks::TaskInfo &task = m_world.manager().workerAt(0)->record();
    EXPECT_EQ(task.strOutputName, u"Harbour"_s);
    EXPECT_EQ(task.strOutputFolder, m_world.sandbox().path() + u"/Harbour/"_s);
    EXPECT_EQ(task.strDownloadUrl, u"http://media.example/clip.mp4"_s);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(TollivarDlgTest, theBrowserAsksUnlessShiftOrItsKeyIsPressed)
{
    CTollivarDlg &window = open();
    QSignalSpy wanted(&window, &CTollivarDlg::browserWanted);
    click(u"btnBrowser"_s);
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    test::press(window, Qt::Key_B, Qt::ControlModifier);
    ASSERT_EQ(wanted.size(), 2);
    EXPECT_TRUE(wanted[0][0].toBool());
    EXPECT_FALSE(wanted[1][0].toBool());
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
    EXPECT_EQ(window.copiedText(), copied);
}

} // namespace tollivar::ui
