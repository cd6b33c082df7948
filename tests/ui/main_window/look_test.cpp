#include "tests/support/wait_until.h"
#include "tests/ui/main_window/tollivar_dlg_fixture.h"
#include "ui/task_list/header_ctrl_ex.h"

#include <QLabel>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

using MainWindowLook = TollivarDlgTest;

TEST_F(MainWindowLook, atItsSmallestShowsWholeTextsInEveryLanguage)
{
    m_world.add(u"a"_s);
    CTollivarDlg &window = open();
    const auto &header = *window.findChild<CHeaderCtrlEx *>();
    for (const QString &language : m_world.texts().languages()) {
        const std::string in = " in " + language.toStdString();
        m_world.texts().applyLanguage(language);
        QApplication::processEvents();
        window.resize(window.minimumSize());
        QApplication::processEvents();
        EXPECT_GE(window.width(), 680);
        EXPECT_GE(window.height(), 380);
        for (const QToolButton *button : window.findChildren<QToolButton *>()) {
            if (!button->isVisible()) {
                continue;
            }
            EXPECT_GE(button->width(), button->sizeHint().width())
                << button->objectName().toStdString() << in;
        }
        for (int column = 0; column < header.count(); ++column) {
            EXPECT_GE(header.sectionSize(column), header.headingWidth(column)) << column << in;
        }
        EXPECT_EQ(header.length(), m_list->viewport()->width()) << in;
    }
}

TEST_F(MainWindowLook, aLanguageWithLongTextsMakesRoomForThem)
{
    CTollivarDlg &window = open();
    window.resize(window.minimumSize());
    const int before = window.width();
    test::control<QToolButton>(window, u"btnStart"_s)->setText(u"Start it all at once, now"_s);
    test::waitUntil("the window to grow", [&] { return window.width() > before; });
}

TEST_F(MainWindowLook, theHintOfAnEmptyListIsQuiet)
{
    CTollivarDlg &window = open();
    const auto *hint =
        test::control<QToolButton>(window, u"btnEmptyAdd"_s)->parentWidget()->findChild<QLabel *>();
    ASSERT_NE(hint, nullptr);
    EXPECT_EQ(hint->palette().color(QPalette::WindowText), QColor(102, 115, 134));
}

} // namespace tollivar::ui
