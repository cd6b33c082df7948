#include "tests/support/wait_until.h"
#include "tests/ui/main_window/tollivar_dlg_fixture.h"

#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using tasks::TaskState;
using testing::ElementsAre;

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
    QObject::connect(&window.totals(), &TotalsLine::shareChanged,
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

TEST_F(TollivarDlgTest, theLanguageMenuTicksEnglishUntilSomebodyChooses)
{
    open();
    const auto ticked = [this] {
        click(u"btnMenu"_s);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        auto *languages = menu->findChild<QMenu *>();
        Q_EMIT languages->aboutToShow();
        QStringList names;
        for (const QAction *action : languages->actions()) {
            if (action->isChecked()) {
                names.append(action->text());
            }
        }
        menu->close();
        return names;
    };
    EXPECT_EQ(ticked(), QStringList{u"English"_s});
    m_world.texts().applyLanguage(u"Deutsch"_s);
    EXPECT_EQ(ticked(), QStringList{u"Deutsch"_s});
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
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
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

} // namespace tollivar::ui
