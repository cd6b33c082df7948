#include "tests/support/window_driver.h"
#include "ui/skin/text_ui.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace tollivar::DuiLib {

using namespace Qt::StringLiterals;

/// A text between two buttons, met by the keyboard.
class TextUiTest : public ::testing::Test {
protected:
    void show(const QString &markup)
    {
        m_text.setMarkup(markup);
        for (QWidget *widget : {static_cast<QWidget *>(&m_before), static_cast<QWidget *>(&m_text),
                                static_cast<QWidget *>(&m_after)}) {
            m_layout.addWidget(widget);
        }
        m_window.show();
        m_window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_before.setFocus();
    }
    static QWidget *pressed(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        test::press(*QApplication::focusWidget(), key, modifiers);
        return QApplication::focusWidget();
    }

    QWidget m_window;
    QVBoxLayout m_layout{&m_window};
    QPushButton m_before{&m_window};
    CTextUI m_text{&m_window};
    QPushButton m_after{&m_window};
};

TEST_F(TextUiTest, aLinkIsOneStopOfTheKeyboardBothWays)
{
    show(u"Home: {a}page{/a}"_s);
    EXPECT_EQ(pressed(Qt::Key_Tab), &m_text);
    EXPECT_EQ(pressed(Qt::Key_Tab), &m_after);
    EXPECT_EQ(pressed(Qt::Key_Backtab, Qt::ShiftModifier), &m_text);
    EXPECT_EQ(pressed(Qt::Key_Backtab, Qt::ShiftModifier), &m_before);
}

TEST_F(TextUiTest, aTextWithoutALinkIsNoStop)
{
    show(u"{b}Home{/b}"_s);
    EXPECT_EQ(pressed(Qt::Key_Tab), &m_after);
}

TEST_F(TextUiTest, spaceFollowsTheLink)
{
    show(u"{a}page{/a}"_s);
    QSignalSpy clicked(&m_text, &CTextUI::linkClicked);
    pressed(Qt::Key_Tab);
    pressed(Qt::Key_A);
    EXPECT_EQ(clicked.count(), 0);
    pressed(Qt::Key_Space);
    EXPECT_EQ(clicked.count(), 1);
}

TEST_F(TextUiTest, theLinkThatHasTheKeyboardIsUnderlined)
{
    show(u"{a}page{/a}"_s);
    EXPECT_FALSE(m_text.text().contains(u"underline"_s));
    pressed(Qt::Key_Tab);
    EXPECT_TRUE(m_text.text().contains(u"underline"_s));
    pressed(Qt::Key_Tab);
    EXPECT_FALSE(m_text.text().contains(u"underline"_s));
}

} // namespace tollivar::DuiLib
