#include "companions/clip_player/bar_slider.h"
#include "companions/clip_player/control_bar.h"
#include "tests/companions/clip_player/player_world.h"
#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"

#include <QApplication>
#include <QDropEvent>
#include <QFileDialog>
#include <QLabel>
#include <QMimeData>
#include <QSet>
#include <QToolButton>
#include <QUrl>

namespace tollivar::player {
namespace {

using namespace Qt::StringLiterals;
using test::control;
using test::waitUntil;

class PlayerWindowTest : public PlayerWorld {
protected:
    /// Drags addresses into the window; whether it takes them is told, and then they are dropped.
    bool drop(const QList<QUrl> &addresses)
    {
        QMimeData data;
        data.setUrls(addresses);
        const QPoint middle = window().rect().center();
        QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QApplication::sendEvent(&window(), &enter);
        QDropEvent event(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window(), &event);
        return enter.isAccepted();
    }

    QString iconName(const QString &button)
    {
        return control<QToolButton>(window(), button)->property("shownIcon").toString();
    }
};

TEST_F(PlayerWindowTest, emptyItSaysWhatToDo)
{
    EXPECT_EQ(sentence(), u"Nothing is open."_s);
    EXPECT_FALSE(control<QToolButton>(window(), u"play"_s)->isEnabled());
    EXPECT_FALSE(control<BarSlider>(window(), u"seek"_s)->isEnabled());
    EXPECT_TRUE(control<QToolButton>(window(), u"open"_s)->isEnabled());
    EXPECT_EQ(control<QLabel>(window(), u"duration"_s)->text(), u"-:--"_s);
}

TEST_F(PlayerWindowTest, theButtonsDoWhatTheySay)
{
    play(makeClip(u"a.mp4"_s));
    EXPECT_EQ(window().windowTitle(), u"a.mp4"_s);
    EXPECT_EQ(control<QLabel>(window(), u"duration"_s)->text(), u"0:04"_s);
    EXPECT_EQ(iconName(u"play"_s), u"pause"_s);
    test::click(*control<QToolButton>(window(), u"play"_s));
    waitUntil("paused", [&] { return state().isPaused; });
    EXPECT_EQ(iconName(u"play"_s), u"play"_s);
    test::click(*control<QToolButton>(window(), u"mute"_s));
    waitUntil("muted", [&] { return iconName(u"mute"_s) == u"muted"_s; });
    test::click(*control<QToolButton>(window(), u"fullScreen"_s));
    EXPECT_TRUE(window().isFullScreen());
}

TEST_F(PlayerWindowTest, aClickOnTheSeekBarGoesThereAtOnce)
{
    play(makeClip(u"a.mp4"_s));
    test::press(window(), Qt::Key_Space);
    waitUntil("paused", [&] { return state().isPaused; });
    auto *seek = control<BarSlider>(window(), u"seek"_s);
    test::click(*seek);
    waitUntil("the middle", [&] { return std::abs(state().position.value_or(0) - 2) < 0.15; });
    test::clickAt(*seek, {1, seek->height() / 2});
    waitUntil("the beginning", [&] { return state().position.value_or(9) < 0.1; });
    auto *volume = control<BarSlider>(window(), u"volume"_s);
    test::click(*volume);
    waitUntil("half the volume", [&] { return std::abs(state().volume - 50) < 3; });
}

TEST_F(PlayerWindowTest, theKeysWorkWhereverTheFocusIs)
{
    play(makeClip(u"a.mp4"_s));
    control<QToolButton>(window(), u"open"_s)->setFocus();
    test::press(window(), Qt::Key_Space);
    waitUntil("paused", [&] { return state().isPaused; });
    test::press(window(), Qt::Key_Right);
    waitUntil("the end, or near it", [&] { return state().position.value_or(0) > 3.5; });
    test::press(window(), Qt::Key_Left);
    waitUntil("the beginning", [&] { return state().position.value_or(9) < 0.1; });
    test::press(window(), Qt::Key_Down);
    test::press(window(), Qt::Key_Down);
    waitUntil("90 %", [&] { return qRound(state().volume) == 90; });
    test::press(window(), Qt::Key_Up);
    waitUntil("95 %", [&] { return qRound(state().volume) == 95; });
    test::press(window(), Qt::Key_M);
    waitUntil("muted", [&] { return state().isMuted; });
}

TEST_F(PlayerWindowTest, aFocusedControlKeepsItsOwnKeys)
{
    play(makeClip(u"a.mp4"_s));
    auto *mute = control<QToolButton>(window(), u"mute"_s);
    mute->setFocus();
    test::press(*mute, Qt::Key_Space);
    waitUntil("muted", [&] { return state().isMuted; });
    EXPECT_FALSE(state().isPaused);
    auto *volume = control<BarSlider>(window(), u"volume"_s);
    volume->setFocus();
    test::press(*volume, Qt::Key_Left);
    waitUntil("95 %", [&] { return qRound(state().volume) == 95; });
}

TEST_F(PlayerWindowTest, fullScreenHidesTheControlsUntilTheMouseMoves)
{
    play(makeClip(u"a.mp4"_s));
    auto *bar = window().findChild<ControlBar *>();
    test::press(window(), Qt::Key_F);
    EXPECT_TRUE(window().isFullScreen());
    EXPECT_EQ(iconName(u"fullScreen"_s), u"window"_s);
    waitUntil("the controls are gone", [&] { return !bar->isVisible(); });
    QMouseEvent move(QEvent::MouseMove, QPointF(9, 9), window().mapToGlobal(QPointF(9, 9)),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&window(), &move);
    EXPECT_TRUE(bar->isVisible());
    test::press(window(), Qt::Key_Escape);
    EXPECT_FALSE(window().isFullScreen());
    EXPECT_TRUE(bar->isVisible());
}

TEST_F(PlayerWindowTest, aDroppedFilePlays)
{
    const QString clip = makeClip(u"dropped %41.mp4"_s);
    EXPECT_TRUE(drop({QUrl::fromLocalFile(clip)}));
    waitUntil("it plays", [&] { return state().status == PlayerStatus::Loaded; });
    EXPECT_EQ(state().path, clip);
}

TEST_F(PlayerWindowTest, addressesAndSeveralFilesAreNotTaken)
{
    const QUrl clip = QUrl::fromLocalFile(makeClip(u"a.mp4"_s));
    EXPECT_FALSE(drop({QUrl(u"http://127.0.0.1/a.mp4"_s)}));
    EXPECT_FALSE(drop({clip, clip}));
    EXPECT_FALSE(drop({}));
    EXPECT_EQ(state().status, PlayerStatus::Empty);
}

TEST_F(PlayerWindowTest, controlOAsksForAFile)
{
    const QString clip = makeClip(u"a.mp4"_s);
    test::press(window(), Qt::Key_O, Qt::ControlModifier);
    auto *dialog = window().findChild<QFileDialog *>();
    ASSERT_NE(dialog, nullptr);
    Q_EMIT dialog->fileSelected(clip);
    dialog->close();
    waitUntil("it plays", [&] { return state().status == PlayerStatus::Loaded; });
}

TEST_F(PlayerWindowTest, controlQCloses)
{
    test::press(window(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(window().isVisible());
}

TEST_F(PlayerWindowTest, everyControlHasANameATipAndAPlaceInTheTabOrder)
{
    QStringList order;
    for (QWidget *next = window().nextInFocusChain(); next != &window();
         next = next->nextInFocusChain()) {
        if ((next->focusPolicy() & Qt::TabFocus) != 0 && next->isVisible()) {
            EXPECT_FALSE(next->accessibleName().isEmpty()) << next->objectName().toStdString();
            EXPECT_FALSE(next->toolTip().isEmpty()) << next->objectName().toStdString();
            order.append(next->objectName());
        }
    }
    EXPECT_EQ(order, QStringList({u"play"_s, u"seek"_s, u"mute"_s, u"volume"_s, u"open"_s,
                                  u"fullScreen"_s}));
}

TEST_F(PlayerWindowTest, everyIconIsReallyDrawn)
{
    play(makeClip(u"a.mp4"_s));
    for (auto *button : window().findChildren<QToolButton *>()) {
        const QImage image = button->icon().pixmap(44).toImage();
        QSet<QRgb> colors;
        for (int place = 0; place < image.width() * image.height(); ++place) {
            colors.insert(image.pixel(place % image.width(), place / image.width()));
        }
        EXPECT_GT(colors.size(), 2) << button->objectName().toStdString();
    }
}

} // namespace
} // namespace tollivar::player
