#include "tests/support/window_driver.h"
#include "tests/ui/window_world.h"
#include "ui/dialog/message_box.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

class MessageBoxTest : public ::testing::Test {
protected:
    void SetUp() override { test::useDefaultSkin(); }

    MessageBox m_box{MessageBox::Question, u"Title"_s, u"Is that so?"_s,
                     MessageBox::Yes | MessageBox::No, nullptr};
};

TEST_F(MessageBoxTest, wearsTheSkinsCaptionInsteadOfAFrame)
{
    m_box.show();
    EXPECT_TRUE(m_box.windowFlags().testFlag(Qt::FramelessWindowHint));
    auto &caption = *test::control<QLabel>(m_box, u"textCaption"_s);
    EXPECT_EQ(caption.accessibleName(), u"Title"_s);
    m_box.setWindowTitle(u"Another"_s);
    EXPECT_EQ(caption.accessibleName(), u"Another"_s);
}

TEST_F(MessageBoxTest, coversNothingThatItSays)
{
    m_box.show();
    const auto placeOf = [this](const QWidget &part) {
        return QRect(part.mapTo(&m_box, QPoint()), part.size());
    };
    const QRect caption = placeOf(*test::control(m_box, u"textCaption"_s)->parentWidget());
    const QRect text = placeOf(*test::control(m_box, u"qt_msgbox_label"_s));
    const QRect buttons = placeOf(*m_box.button(MessageBox::Yes));
    EXPECT_EQ(caption.width(), m_box.width() - 2);
    EXPECT_GT(text.top(), caption.bottom());
    EXPECT_GT(buttons.top(), text.bottom());
    EXPECT_TRUE(m_box.rect().contains(buttons));
}

TEST_F(MessageBoxTest, theCaptionsButtonClosesItLikeEscape)
{
    m_box.show();
    auto &close = *m_box.findChild<QToolButton *>();
    EXPECT_FALSE(close.accessibleName().isEmpty());
    test::click(close);
    EXPECT_FALSE(m_box.isVisible());
    EXPECT_EQ(m_box.result(), MessageBox::No);
}

TEST_F(MessageBoxTest, showsTheSkinsOwnImage)
{
    const QImage image = m_box.iconPixmap().toImage();
    ASSERT_FALSE(image.isNull());
    // The style's own is a filled ball.
    EXPECT_EQ(image.pixelColor(image.width() / 2, image.height() / 5).alpha(), 0);
    EXPECT_EQ(m_box.icon(), MessageBox::Question);
}

TEST_F(MessageBoxTest, asksAndAnswersLikeQtsOwn)
{
    test::whenModalOpens(
        [](QWidget &box) { qobject_cast<QMessageBox *>(&box)->button(QMessageBox::Yes)->click(); });
    EXPECT_EQ(MessageBox::question(nullptr, u"Title"_s, u"Is that so?"_s), MessageBox::Yes);
    test::whenModalOpens([](QWidget &box) { test::press(box, Qt::Key_Escape); });
    EXPECT_EQ(MessageBox::question(nullptr, u"Title"_s, u"Is that so?"_s), MessageBox::No);
    test::whenModalOpens([](QWidget &box) { test::press(box, Qt::Key_Return); });
    EXPECT_EQ(MessageBox::warning(nullptr, u"Title"_s, u"So it is."_s), MessageBox::Ok);
}

TEST_F(MessageBoxTest, aSentenceIsWholeInOneLineOrMore)
{
    for (int words = 1; words < 30; ++words) {
        m_box.setText(u"sentence "_s.repeated(words));
        m_box.show();
        const auto &text = *test::control<QLabel>(m_box, u"qt_msgbox_label"_s);
        if (text.wordWrap()) {
            EXPECT_GE(text.height(), text.heightForWidth(text.width())) << words;
        } else {
            EXPECT_GE(text.width(), text.sizeHint().width()) << words;
        }
        m_box.hide();
    }
}

TEST_F(MessageBoxTest, aLongTextMakesItHigherAndIsWhole)
{
    m_box.setText(u"A sentence that says one thing after the other. "_s.repeated(12));
    m_box.show();
    const auto &text = *test::control<QLabel>(m_box, u"qt_msgbox_label"_s);
    EXPECT_GE(text.height(), text.heightForWidth(text.width()));
}

} // namespace tollivar::ui
