#include "tests/ui/main_window/tollivar_dlg_fixture.h"
#include "ui/main_window/window_keys.h"

#include <QClipboard>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using tasks::TaskState;
using testing::ElementsAre;

/// The window as somebody has it in front, who has typed nothing yet.
class WindowKeys : public TollivarDlgTest {
protected:
    CTollivarDlg &openInFront()
    {
        CTollivarDlg &window = open();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        return window;
    }
    /// A key goes to whoever has the keyboard.
    static void pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        test::press(*QApplication::focusWidget(), key, modifiers);
    }
    bool isEnabled(const QString &name)
    {
        return test::control(m_world.window(), name)->isEnabled();
    }
    /// What the list's menu holds when it opens.
    QMenu *openListMenu()
    {
        Q_EMIT m_list->menuWanted({});
        return qobject_cast<QMenu *>(QApplication::activePopupWidget());
    }
    bool canInListMenu(int command)
    {
        QMenu *menu = openListMenu();
        bool can = false;
        for (const QAction *action : menu->actions()) {
            can = can || (action->data() == command && action->isEnabled());
        }
        menu->close();
        return can;
    }
};

TEST_F(WindowKeys, areTheListsFromTheStart)
{
    m_world.add(u"a"_s);
    const auto id = m_world.add(u"b"_s);
    openInFront();
    EXPECT_EQ(QApplication::focusWidget(), m_list);
    pressKey(Qt::Key_Down);
    pressKey(Qt::Key_Space);
    EXPECT_EQ(state(id), TaskState::Started);
}

TEST_F(WindowKeys, stayTheListsAfterAClickOnAButton)
{
    m_world.add(u"a"_s);
    openInFront();
    m_list->selectRows({0});
    click(u"btnStart"_s);
    EXPECT_EQ(QApplication::focusWidget(), m_list);
    pressInDialog(u"btnCancel"_s);
    pressKey(Qt::Key_Delete);
    EXPECT_EQ(m_world.manager().visibleCount(), 1);
    click(u"btnDownloading"_s);
    EXPECT_EQ(m_world.window().focusWidget(), m_list);
}

TEST_F(WindowKeys, deleteAndSelectAllWorkFromEverywhere)
{
    m_world.add(u"a"_s);
    m_world.add(u"b"_s);
    openInFront();
    test::control(m_world.window(), u"btnAddUrl"_s)->setFocus();
    pressKey(Qt::Key_A, Qt::ControlModifier);
    EXPECT_THAT(m_list->selectedRows(), ElementsAre(0, 1));
    pressInDialog(u"btnOK"_s);
    pressKey(Qt::Key_Delete, Qt::KeypadModifier);
    EXPECT_EQ(m_world.manager().visibleCount(), 0);
}

TEST_F(WindowKeys, playClearAndAskForSettingsAndGuide)
{
    m_world.addCompleted(u"a"_s);
    CTollivarDlg &window = openInFront();
    QSignalSpy player(&window.selected(), &SelectedTasks::playerWanted);
    QSignalSpy settings(&window, &CTollivarDlg::settingsWanted);
    QSignalSpy help(&window, &CTollivarDlg::helpWanted);
    QSignalSpy exit(&window, &CTollivarDlg::exitWanted);
    pressKey(Qt::Key_P, Qt::ControlModifier);
    pressKey(Qt::Key_Comma, Qt::ControlModifier);
    pressKey(Qt::Key_F1);
    pressKey(Qt::Key_Q, Qt::ControlModifier);
    for (const QSignalSpy *told : {&player, &settings, &help, &exit}) {
        EXPECT_EQ(told->count(), 1) << told->signal().constData();
    }
    answer(QMessageBox::Yes);
    pressKey(Qt::Key_Delete, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(m_world.manager().completedCount(), 0);
}

TEST_F(WindowKeys, copyAddressesButNoFileAddressThatIsNotKnown)
{
    tasks::TaskInfo task;
    task.strOutputName = u"a"_s;
    m_world.add(task);
    task.strDownloadUrl = u"http://cdn.example/b"_s;
    m_world.add(task);
    openInFront();
    m_list->selectRows({0});
    pressKey(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"http://site.example/watch/a\r\n"_s);
    pressKey(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"http://site.example/watch/a\r\n"_s);
    m_list->selectRows({1});
    pressKey(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"http://cdn.example/b\r\n"_s);
}

TEST_F(WindowKeys, areShownInTipsAndMenus)
{
    m_world.add(u"a"_s);
    CTollivarDlg &window = openInFront();
    EXPECT_EQ(test::control(window, u"btnStart"_s)->toolTip(), u"Start Task(s) (F5)"_s);
    EXPECT_EQ(test::control(window, u"btnMin"_s)->toolTip(), u"Minimize"_s);
    m_list->selectRows({0});
    QMenu *menu = openListMenu();
    QStringList keys;
    for (const QAction *action : menu->actions()) {
        if (!action->shortcut().isEmpty() && action->isShortcutVisibleInContextMenu()) {
            keys.append(action->shortcut().toString());
        }
    }
    menu->close();
    EXPECT_EQ(keys, (QStringList{u"Ctrl+C"_s, u"Ctrl+Shift+C"_s}));
}

TEST_F(WindowKeys, doOneThingEach)
{
    std::set<int> seen;
    for (const WindowKey &key : windowKeys()) {
        EXPECT_TRUE(seen.insert(key.keys.toCombined()).second);
        EXPECT_NE(key.button.isEmpty(), key.command == 0);
    }
}

TEST_F(WindowKeys, buttonsThatWouldDoNothingAreGrey)
{
    m_world.add(u"a"_s);
    m_world.addCompleted(u"b"_s);
    openInFront();
    for (const QString &name : {u"btnStart"_s, u"btnStop"_s, u"btnRemove"_s}) {
        m_list->clearSelection();
        EXPECT_FALSE(isEnabled(name)) << name.toStdString();
        m_list->selectRows({0});
        EXPECT_TRUE(isEnabled(name)) << name.toStdString();
    }
    m_list->clearSelection();
    click(u"btnDownloaded"_s);
    EXPECT_TRUE(isEnabled(u"btnStart"_s)) << "it leads to the tasks that are not done";
    EXPECT_FALSE(isEnabled(u"btnStop"_s));
    EXPECT_TRUE(isEnabled(u"btnClearAll"_s));
}

TEST_F(WindowKeys, aButtonThatTurnsGreyHandsTheKeyboardToTheList)
{
    m_world.add(u"a"_s);
    openInFront();
    m_list->selectRows({0});
    test::control(m_world.window(), u"btnRemove"_s)->setFocus();
    pressInDialog(u"btnOK"_s);
    pressKey(Qt::Key_Space);
    EXPECT_EQ(m_world.manager().visibleCount(), 0);
    EXPECT_EQ(m_world.window().focusWidget(), m_list);
}

TEST_F(WindowKeys, theListsMenuGreysOutWhatATaskHasNotYet)
{
    namespace commands = language::commands;
    m_world.add(u"a"_s);
    tasks::TaskInfo task;
    task.strOutputName = u"b"_s;
    task.strDownloadUrl = u"http://cdn.example/b"_s;
    task.strFileType = u".flv"_s;
    task.bFileCreated = 1;
    m_world.add(task);
    openInFront();
    for (const int command : {commands::kPlay, commands::kPlayInPlayer, commands::kBrowseFile,
                              commands::kConvert, commands::kCopyFileAddress}) {
        m_list->selectRows({0});
        EXPECT_FALSE(canInListMenu(command)) << command;
        m_list->selectRows({1});
        EXPECT_TRUE(canInListMenu(command)) << command;
    }
    m_list->selectRows({0});
    for (const int command :
         {commands::kOpenFolder, commands::kCopyWebAddress, commands::kOpenWebPage}) {
        EXPECT_TRUE(canInListMenu(command)) << command;
    }
}

} // namespace tollivar::ui
