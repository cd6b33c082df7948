#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"
#include "ui/dialog/dialog_texts.h"
#include "ui/dialog/ui_lib_dialog.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QTest>
#include <QToolButton>
#include <QWindow>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using DuiLib::CPaintManagerUI;

namespace {

constexpr auto kSkin =
    "<Window size='300,200' sizebox='5,5,5,5' caption='0,0,0,40' roundcorner='%1'>"
    "<HorizontalLayout height='40'><Text name='textCaption' text='Caption' width='60'/>"
    "<Text name='textOther' text='Other' width='60'/><Button name='btn' text='B' width='40'/>"
    "<Control stretch='1'/></HorizontalLayout>"
    "<Edit name='edit'/><Label name='lab' text='L' buddy='edit'/>"
    "<Combo name='list'><Item text='a'/><Item text='b'/></Combo><Control stretch='1'/></Window>";

class TestDialog final : public CUILibDialog {
public:
    TestDialog() : CUILibDialog(nullptr) { createFace(u"Test.xml"_s, {}); }
    void Notify(const DuiLib::SkinEvent &event) override { events.append(QString(event.type)); }
    using CUILibDialog::setLeastSize;
    using CUILibDialog::toggleMaximised;
    QStringList events;
};

} // namespace

class UiLibDialogTest : public ::testing::Test {
protected:
    void SetUp() override { useSkin(u"0,0"_s); }
    void TearDown() override { CPaintManagerUI::SetInstance(); }

    void useSkin(const QString &corner) const
    {
        m_sandbox.write(u"skin/Test.xml"_s, QString::fromLatin1(kSkin).arg(corner).toUtf8());
        m_sandbox.write(u"skin/skin.qss"_s, "QLabel { color: black; }");
        CPaintManagerUI::SetInstance();
        CPaintManagerUI::SetResourcePath(m_sandbox.file(u"skin"_s));
    }

    static void drag(QDialog &dialog, QPoint from, QPoint by)
    {
        QWindow *window = dialog.windowHandle();
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        for (int step = 1; step <= 4; ++step) {
            QTest::mouseMove(window, from + by * step / 4);
        }
        QTest::mouseRelease(window, Qt::LeftButton, {}, from + by);
    }

    test::Sandbox m_sandbox;
};

TEST_F(UiLibDialogTest, tellsWhenItIsLaidOut)
{
    const TestDialog dialog;
    EXPECT_EQ(dialog.events, QStringList{u"windowinit"_s});
    EXPECT_EQ(dialog.size(), QSize(300, 200));
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_TRUE(dialog.windowFlags().testFlag(Qt::FramelessWindowHint));
}

TEST_F(UiLibDialogTest, neitherEnterNorEscapeClosesIt)
{
    TestDialog dialog;
    dialog.show();
    QWidget *edit = dialog.findChild<QLineEdit *>();
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
        test::press(dialog, key);
        test::press(*edit, key);
        test::press(*dialog.findChild<QToolButton *>(), key);
    }
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialog.events, QStringList{u"windowinit"_s});
    test::type(*edit, u"typing works"_s);
    EXPECT_EQ(dialog.findChild<QLineEdit *>()->text(), u"typing works"_s);
}

TEST_F(UiLibDialogTest, theCaptionsEmptyAreaMovesTheWindowAndAnotherTextDoesNot)
{
    TestDialog dialog;
    dialog.move(100, 100);
    dialog.show();
    const auto area = [&dialog](int x) { return dialog.hitTestAt({x, 20}).kind; };
    EXPECT_EQ(area(30), HitArea::Kind::Caption);
    EXPECT_EQ(area(90), HitArea::Kind::Client);
    EXPECT_EQ(area(140), HitArea::Kind::Client);
    EXPECT_EQ(area(250), HitArea::Kind::Caption);
    EXPECT_EQ(dialog.hitTestAt({250, 100}).kind, HitArea::Kind::Client);

    drag(dialog, {90, 20}, {60, 40});
    EXPECT_EQ(dialog.pos(), QPoint(100, 100));
    drag(dialog, {250, 20}, {60, 40});
    EXPECT_NE(dialog.pos(), QPoint(100, 100));
}

TEST_F(UiLibDialogTest, isMovedFromWhereThePointerFindsIt)
{
    TestDialog dialog;
    dialog.move(100, 100);
    dialog.show();
    QWindow *window = dialog.windowHandle();
    // Pressed in the caption of a window that has come to stand elsewhere, unheard.
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(250, 20), QPointF(250, 20),
                      QPointF(650, 320), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window, &press);
    EXPECT_EQ(window->position(), QPoint(400, 300));
    QMouseEvent move(QEvent::MouseMove, QPointF(290, 50), QPointF(290, 50), QPointF(690, 350),
                     Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(window, &move);
    EXPECT_EQ(window->position(), QPoint(440, 330));
}

TEST_F(UiLibDialogTest, anEdgeResizesTheWindowUnlessItIsMaximised)
{
    TestDialog dialog;
    dialog.move(100, 100);
    dialog.show();
    drag(dialog, {298, 100}, {50, 0});
    EXPECT_EQ(dialog.height(), 200);
    EXPECT_GT(dialog.width(), 300);
    dialog.showMaximized();
    const QPoint edge(dialog.width() - 2, 100);
    EXPECT_EQ(dialog.hitTestAt(edge).kind, HitArea::Kind::Client);
}

TEST_F(UiLibDialogTest, maximisedItFillsTheWorkAreaOfItsScreen)
{
    TestDialog dialog;
    dialog.show();
    QTest::mouseDClick(dialog.windowHandle(), Qt::LeftButton, {}, {250, 20});
    EXPECT_TRUE(dialog.isMaximized());
    test::waitUntil("the window fills the work area", [&dialog] {
        return dialog.geometry() == dialog.screen()->availableGeometry();
    });
    dialog.toggleMaximised();
    EXPECT_FALSE(dialog.isMaximized());
}

TEST_F(UiLibDialogTest, roundCornersClipTheWindowAndSquareOnesDoNot)
{
    TestDialog square;
    square.show();
    EXPECT_TRUE(square.mask().isEmpty());
    useSkin(u"12,12"_s);
    TestDialog round;
    round.show();
    EXPECT_FALSE(round.mask().contains(QPoint(0, 0)));
    EXPECT_FALSE(round.mask().contains(QPoint(299, 199)));
    EXPECT_TRUE(round.mask().contains(QPoint(150, 0)));
    EXPECT_TRUE(round.mask().contains(QPoint(150, 199)));
    round.resize(400, 250);
    EXPECT_TRUE(round.mask().contains(QPoint(380, 200)));
    round.showMaximized();
    EXPECT_TRUE(round.mask().isEmpty());
    round.showNormal();
    EXPECT_FALSE(round.mask().isEmpty());
}

TEST_F(UiLibDialogTest, styleSheetsKnowWhetherItIsMaximised)
{
    m_sandbox.write(u"skin/skin.qss"_s,
                    "[skinClass=\"WindowUI\"] { background: #ff0000; border-radius: 9px; }"
                    "[maximised=\"true\"] [skinClass=\"WindowUI\"] { border-radius: 0; }");
    CPaintManagerUI::SetResourcePath(m_sandbox.file(u"skin"_s));
    TestDialog dialog;
    dialog.show();
    const auto corner = [&dialog] {
        const QImage picture = dialog.grab().toImage();
        return picture.pixelColor(0, picture.height() - 1);
    };
    EXPECT_NE(corner(), QColor(Qt::red));
    dialog.showMaximized();
    EXPECT_EQ(corner(), QColor(Qt::red));
    dialog.showNormal();
    EXPECT_NE(corner(), QColor(Qt::red));
}

TEST_F(UiLibDialogTest, isNoSmallerThanItsControlsNeed)
{
    TestDialog dialog;
    dialog.setLeastSize({120, 90});
    dialog.show();
    EXPECT_GE(dialog.minimumWidth(), 120);
    auto &button = *dialog.findChild<QToolButton *>();
    button.setMinimumWidth(500);
    test::waitUntil("the window to grow", [&dialog] { return dialog.width() > 500; });
    EXPECT_GT(dialog.minimumWidth(), 500);
    button.setMinimumWidth(0);
    test::waitUntil("the limit to go", [&dialog] { return dialog.minimumWidth() < 500; });
}

TEST_F(UiLibDialogTest, textsComeBySectionAndControlName)
{
    TestDialog dialog;
    applyDialogTexts(dialog, u"SECTION"_s, [](const QString &section, const QString &control) {
        return control == u"btn"_s ? QString() : section + u'/' + control;
    });
    EXPECT_EQ(dialog.windowTitle(), u"SECTION/title"_s);
    EXPECT_EQ(dialog.findChild<QToolButton *>(u"btn"_s)->text(), u"B"_s);
    EXPECT_EQ(dialog.findChild<QLabel *>(u"lab"_s)->text(), u"SECTION/lab"_s);
    EXPECT_EQ(dialog.findChild<QLineEdit *>()->accessibleName(), u"SECTION/lab"_s);
    EXPECT_EQ(dialog.findChild<QComboBox *>()->itemText(1), u"SECTION/list_1"_s);
    EXPECT_EQ(dialog.findChild<QLineEdit *>()->text(), QString());
}

} // namespace tollivar::ui
