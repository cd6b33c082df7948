#include "tests/ui/main_window/tollivar_dlg_fixture.h"

#include <QClipboard>
#include <QMenu>
#include <QTest>
#include <QWindow>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

/// What a right click on the list of the window brings.
class ListMenu : public TollivarDlgTest {
protected:
    void TearDown() override
    {
        if (QWidget *menu = QApplication::activePopupWidget()) {
            menu->close();
        }
    }

    QPoint middleOf(int row) const
    {
        return m_list->visualRect(m_list->model()->index(row, 1)).center();
    }
    QPoint belowTheRows() const
    {
        return {20, m_list->model()->rowCount() * m_list->rowHeight() + 20};
    }
    /// As the desktop hands it to the program: an open menu takes the button's release.
    void rightClick(QPoint place)
    {
        CTollivarDlg &window = m_world.window();
        QTest::mouseClick(window.windowHandle(), Qt::RightButton, {},
                          m_list->viewport()->mapTo(&window, place));
    }
    static QMenu *menu() { return qobject_cast<QMenu *>(QApplication::activePopupWidget()); }
};

TEST_F(ListMenu, opensForAnUnselectedRowAfterSelectingThatAlone)
{
    m_world.add(u"a"_s);
    m_world.add(u"b"_s);
    open();
    m_list->selectRows({0});
    rightClick(middleOf(1));
    ASSERT_NE(menu(), nullptr);
    EXPECT_EQ(menu()->actions().front()->data().toInt(), language::commands::kPlay);
    EXPECT_THAT(m_list->selectedRows(), ElementsAre(1));
    for (QAction *action : menu()->actions()) {
        if (action->data() == language::commands::kCopyWebAddress) {
            action->trigger();
        }
    }
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"http://site.example/watch/b\r\n"_s);
}

TEST_F(ListMenu, keepsTheSelectionItIsOpenedOn)
{
    m_world.add(u"a"_s);
    m_world.add(u"b"_s);
    open();
    m_list->selectRows({0, 1});
    rightClick(middleOf(1));
    EXPECT_NE(menu(), nullptr);
    EXPECT_THAT(m_list->selectedRows(), ElementsAre(0, 1));
}

TEST_F(ListMenu, besideTheRowsIsThatOfTheSelectedOnes)
{
    m_world.add(u"a"_s);
    open();
    m_list->selectRows({0});
    rightClick(belowTheRows());
    EXPECT_NE(menu(), nullptr);
    EXPECT_THAT(m_list->selectedRows(), ElementsAre(0));
}

TEST_F(ListMenu, isAllGreyWhereItsCommandsWouldDoNothing)
{
    m_world.add(u"a"_s);
    open();
    rightClick(belowTheRows());
    ASSERT_NE(menu(), nullptr);
    for (const QAction *action : menu()->actions()) {
        EXPECT_FALSE(action->isEnabled() && !action->isSeparator()) << action->text().toStdString();
    }
    EXPECT_THAT(m_list->selectedRows(), IsEmpty());
}

TEST_F(ListMenu, opensOnAnEmptyListToo)
{
    open();
    rightClick({20, 20});
    EXPECT_NE(menu(), nullptr);
}

} // namespace tollivar::ui
