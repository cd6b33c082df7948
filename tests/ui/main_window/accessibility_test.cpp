#include "tests/ui/main_window/tollivar_dlg_fixture.h"
#include "ui/skin/text_ui.h"

#include <QAccessible>
#include <QLabel>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::SizeIs;

/// The window as somebody meets it who does not see it, or has no mouse.
class WindowAccess : public TollivarDlgTest {
protected:
    /// What a screen reader says.
    static QString spokenName(QWidget &control)
    {
        return QAccessible::queryAccessibleInterface(&control)->text(QAccessible::Name);
    }
    void expectNamesAndTips(const char *language)
    {
        const auto buttons = m_world.window().findChildren<QToolButton *>();
        EXPECT_GE(buttons.size(), 17);
        for (QToolButton *button : buttons) {
            const std::string name = button->objectName().toStdString() + " in " + language;
            EXPECT_FALSE(spokenName(*button).isEmpty()) << name;
            // A mere image needs a tip; a text may stand for itself.
            const bool isImage =
                button->toolButtonStyle() == Qt::ToolButtonIconOnly && !button->icon().isNull();
            EXPECT_FALSE(button->toolTip().isEmpty() && isImage) << name;
            EXPECT_FALSE(button->toolTip().isEmpty() && button->text().isEmpty()) << name;
        }
        for (const QString &name : {u"textCaption"_s, u"tCopyright"_s}) {
            auto &text = *test::control<QLabel>(m_world.window(), name);
            EXPECT_FALSE(spokenName(text).isEmpty()) << name.toStdString() << " in " << language;
        }
        EXPECT_FALSE(spokenName(*m_list).isEmpty()) << language;
    }

    /// Presses the key until the keyboard is where it was; the controls on the way.
    std::vector<std::string> walk(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        constexpr int kFarTooMany = 100;
        std::vector<std::string> way;
        const QWidget *begin = QApplication::focusWidget();
        for (int i = 0; i < kFarTooMany; ++i) {
            way.push_back(QApplication::focusWidget()->objectName().toStdString());
            test::press(*QApplication::focusWidget(), key, modifiers);
            if (QApplication::focusWidget() == begin) {
                return way;
            }
        }
        ADD_FAILURE() << "the keyboard does not come back";
        return way;
    }
};

TEST_F(WindowAccess, everyControlHasANameAndATipInEveryLanguage)
{
    open();
    const QStringList languages = m_world.texts().languages();
    EXPECT_GT(languages.size(), 1);
    for (const QString &language : languages) {
        m_world.texts().applyLanguage(language);
        expectNamesAndTips(qPrintable(language));
    }
}

TEST_F(WindowAccess, namesAndTipsFollowTheLanguage)
{
    CTollivarDlg &window = open();
    auto &button = *test::control<QToolButton>(window, u"btnRemove"_s);
    EXPECT_EQ(spokenName(*m_list), u"Tasks"_s);
    const QString english = button.toolTip();
    m_world.texts().applyLanguage(u"Deutsch"_s);
    EXPECT_EQ(spokenName(*m_list), m_world.languages().text(u"strListName"_s));
    EXPECT_NE(spokenName(*m_list), u"Tasks"_s);
    EXPECT_EQ(button.toolTip(), m_world.languages().text(u"strTipRemoveTask"_s) + u" (Del)"_s);
    EXPECT_EQ(spokenName(button), m_world.languages().text(u"strTipRemoveTask"_s));
    EXPECT_NE(button.toolTip(), english);
}

TEST_F(WindowAccess, theFiltersSayTheirCounts)
{
    m_world.add(u"a"_s);
    CTollivarDlg &window = open();
    EXPECT_EQ(spokenName(*test::control(window, u"btnDownloading"_s)), u"Downloading (1)"_s);
}

TEST_F(WindowAccess, tabGoesThroughAllControlsOnceAndBack)
{
    m_world.add(u"a"_s);
    m_world.wantsFlashNote = true;
    CTollivarDlg &window = open();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    m_list->selectRows({0});
    const auto there = walk(Qt::Key_Tab);
    // Of the filters the chosen one stands for all; the caption's buttons have keys of their own.
    EXPECT_THAT(there, ElementsAre("taskList", "tCopyright", "textCaption", "btnAddUrl",
                                   "btnBrowser", "btnPlayer", "btnStart", "btnStop", "btnRemove",
                                   "btnClearAll", "btnExit", "btnAll"));
    auto back = walk(Qt::Key_Backtab, Qt::ShiftModifier);
    std::reverse(back.begin() + 1, back.end());
    EXPECT_EQ(back, there);
}

TEST_F(WindowAccess, arrowsMoveAmongTheFilters)
{
    m_world.addCompleted(u"a"_s);
    m_world.add(u"b"_s);
    CTollivarDlg &window = open();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    test::control(window, u"btnAll"_s)->setFocus();
    test::press(*QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), u"btnDownloading"_s);
    EXPECT_THAT(names(), ElementsAre(u"b"_s));
    test::press(*QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_THAT(names(), ElementsAre(u"a"_s));
}

TEST_F(WindowAccess, anEmptyListsButtonIsReachedByTabToo)
{
    CTollivarDlg &window = open();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    // Three buttons have nothing to do without a task.
    EXPECT_THAT(walk(Qt::Key_Tab), AllOf(SizeIs(9), Contains("btnEmptyAdd")));
}

} // namespace tollivar::ui
