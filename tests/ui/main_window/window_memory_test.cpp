#include "tests/support/wait_until.h"
#include "tests/ui/main_window/tollivar_dlg_fixture.h"
#include "ui/main_window/window_memory.h"

#include <QHeaderView>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
namespace keys = settings::keys;

class WindowMemoryTest : public TollivarDlgTest {
protected:
    QString stored(const settings::Setting &setting) { return m_world.settings().text(setting); }
    void store(const settings::Setting &setting, const QString &text)
    {
        m_world.settings().setText(setting, text);
    }
    QList<int> widths()
    {
        QList<int> all;
        for (int column = 0; column < m_list->model()->columnCount(); ++column) {
            all.append(m_list->columnWidth(column));
        }
        return all;
    }
};

TEST_F(WindowMemoryTest, placeAndColumnsReturnAtTheNextStart)
{
    CTollivarDlg &window = open();
    window.setGeometry(20, 30, 720, 440);
    m_list->setColumnWidth(1, 222);
    const QList<int> chosen = widths();
    window.hide();
    EXPECT_EQ(stored(keys::kWindowPlace), u"20,30,720,440"_s);
    CTollivarDlg &next = open();
    EXPECT_EQ(next.geometry(), QRect(20, 30, 720, 440));
    EXPECT_EQ(widths(), chosen);
    EXPECT_FALSE(next.isMaximized());
}

TEST_F(WindowMemoryTest, aMaximizedWindowReturnsSoAndStillKnowsItsOwnPlace)
{
    CTollivarDlg &window = open();
    window.setGeometry(20, 30, 720, 440);
    click(u"btnMax"_s);
    window.hide();
    CTollivarDlg &next = open();
    test::waitUntil("it to be maximized", [&] { return next.isMaximized(); });
    EXPECT_TRUE(test::control(next, u"btnRestore"_s)->isVisible());
    next.hide();
    EXPECT_EQ(stored(keys::kWindowPlace), u"20,30,720,440"_s);
    next.show();
    click(u"btnRestore"_s);
    next.hide();
    EXPECT_FALSE(m_world.settings().flag(keys::kWindowMaximised));
}

TEST_F(WindowMemoryTest, columnsThatNobodyDraggedGoOnSharingTheList)
{
    open().setGeometry(20, 30, 720, 440);
    m_world.window().hide();
    EXPECT_EQ(stored(keys::kColumnWidths), QString());
    open();
    m_world.window().resize(780, 440);
    EXPECT_EQ(m_list->horizontalHeader()->length(), m_list->viewport()->width());
}

TEST_F(WindowMemoryTest, whatCannotBeUsedIsIgnored)
{
    open();
    const QSize size = m_world.window().size();
    const QList<int> shared = widths();
    for (const QString &place :
         {u"5000,5000,700,400"_s, u"-9,-9,700,400"_s, u"20,30,90000,440"_s, u"20,30,720"_s,
          u"20,30,wide,440"_s, u"20,30,-720,440"_s, u"20,30,720,440,5"_s, u",,,"_s}) {
        store(keys::kWindowPlace, place);
        open();
        EXPECT_EQ(m_world.window().size(), size) << place.toStdString();
    }
    for (const QString &columns :
         {u"40,180,150,70,60"_s, u"40,180,150,70,60,x"_s, u"0,0,0,0,0,0"_s,
          u"40,-180,150,70,60,60"_s, u"40,99999999,150,70,60,60"_s, u"a"_s}) {
        store(keys::kColumnWidths, columns);
        open();
        EXPECT_EQ(widths(), shared) << columns.toStdString();
    }
}

} // namespace tollivar::ui
