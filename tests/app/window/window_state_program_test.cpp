#include "tests/app/window/program_on_desktop.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;
using test::ProgramRun;

/// Presses the window's own close button, which is not what the desktop's does.
void pressClose(const test::DesktopSession &desktop, const QString &window)
{
    constexpr QPoint kFromCorner(-26, 23);
    const QPoint place = desktop.place(window).topRight() + kFromCorner;
    desktop.act({u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), u"click"_s,
                 u"1"_s});
}

TEST_F(ProgramOnDesktop, aHiddenStartWaitsForATrayThatComesUpAfterIt)
{
    startHidden();
    static_cast<void>(m_desktop.waitForWindow(kDropZone));
    EXPECT_FALSE(isShown(kMainWindow));
    m_desktop.startTray();
    download("/one.mp4");
    static_cast<void>(m_desktop.waitForWindow(kPopup));
    EXPECT_FALSE(isShown(kMainWindow));
    m_desktop.doubleClick({11, 1'004});
    waitUntilActive(m_desktop.waitForWindow(kMainWindow));
    end();
}

TEST_F(ProgramOnDesktop, whereNoTrayComesAHiddenStartEndsWithTheWindow)
{
    startHidden();
    static_cast<void>(m_desktop.waitForWindow(kDropZone));
    EXPECT_FALSE(isShown(kMainWindow));
    static_cast<void>(m_desktop.waitForWindow(kMainWindow));
    end();
}

TEST_F(ProgramOnDesktop, theFirstThreeClosesShowABalloonAndTheFourthNone)
{
    m_desktop.startTray();
    for (int close = 1; close <= 4; ++close) {
        const QString window = start();
        waitUntilActive(window);
        pressClose(m_desktop, window);
        test::waitUntil("the window to be hidden", [&] { return !isShown(kMainWindow); });
        if (close < 4) {
            test::waitUntil("the balloon", [&] { return m_desktop.tipCount() == 1; });
        } else {
            // It comes with the click that hides: whoever has done more since has shown it.
            m_desktop.doubleClick({11, 1'004});
            static_cast<void>(m_desktop.waitForWindow(kMainWindow));
            EXPECT_EQ(m_desktop.tipCount(), 0);
        }
        EXPECT_EQ(m_settings->text(settings::keys::kTrayInfoShowTime),
                  QString::number(std::min(close, 3)));
        end();
    }
}

TEST_F(ProgramOnDesktop, theWindowReturnsWhereItWasPut)
{
    const QString window = start();
    waitUntilActive(window);
    const QRect before = m_desktop.place(window);
    m_desktop.drag(window, before.topLeft() + QPoint(before.width() / 2, 14), {60, 40});
    const QRect moved = m_desktop.place(window);
    m_desktop.drag(window, {moved.right() - 1, moved.center().y()}, {-80, 0});
    const QRect resized = m_desktop.place(window);
    EXPECT_NE(resized, before);
    end();
    const QString again = start();
    waitUntilActive(again);
    test::waitUntil("its place", [&] { return m_desktop.place(again) == resized; });
    end();
}

TEST_F(ProgramOnDesktop, aMaximizedWindowReturnsSo)
{
    m_desktop.startTray();
    const QRect full(0, 0, 1'280, 984);
    const QString window = start();
    waitUntilActive(window);
    const QRect before = m_desktop.place(window);
    const QPoint caption(before.width() / 2, 14);
    m_desktop.doubleClick(before.topLeft() + caption);
    test::waitUntil("the work area", [&] { return m_desktop.place(window) == full; });
    end();
    const QString again = start();
    waitUntilActive(again);
    test::waitUntil("the work area again", [&] { return m_desktop.place(again) == full; });
    end();
    // Its own place is not forgotten over that.
    EXPECT_EQ(
        m_settings->text(settings::keys::kWindowPlace),
        u"%1,%2,%3,%4"_s.arg(before.x()).arg(before.y()).arg(before.width()).arg(before.height()));
}

TEST_F(ProgramOnDesktop, theNoteOfAMissingBrowserWaitsForTheDialogThatIsOpen)
{
    m_site.on("/page", test::answer("<p>Films come by script.", "text/html"));
    m_settings->setNumber(settings::keys::kMaxRetry, 0);
    qputenv("TOLLIVAR_BROWSER", "/nonexistent");
    const QString window = start();
    waitUntilActive(window);
    qunsetenv("TOLLIVAR_BROWSER");
    m_desktop.press(window, u"ctrl+n"_s);
    const QString dialog = m_desktop.waitForWindow(kAddTask);
    waitUntilActive(dialog);
    for (int i = 0; i < 2; ++i) {
        ProgramRun terminal(m_sandbox, u"tollivar-cli"_s,
                            {u"download"_s, u"--folder"_s, u"out"_s, m_site.address("/page")});
        EXPECT_EQ(terminal.finish(), 0);
    }
    EXPECT_EQ(m_desktop.active(), dialog);
    EXPECT_EQ(m_desktop.windowCount(kMainWindow), 1);
    m_desktop.close(dialog);
    test::waitUntil("the note", [&] { return m_desktop.windowCount(kMainWindow) == 2; });
    m_desktop.act({u"key"_s, u"Return"_s});
    test::waitUntil("the note to go", [&] { return m_desktop.windowCount(kMainWindow) == 1; });
    end();
}

} // namespace
} // namespace tollivar::app
