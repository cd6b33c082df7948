#include "tests/app/window/program_on_desktop.h"

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;
using test::ProgramRun;

TEST_F(ProgramOnDesktop, theWindowComesUpWithTheKeyboard)
{
    waitUntilActive(start());
    end();
}

TEST_F(ProgramOnDesktop, aSecondStartBringsTheMinimizedWindowBack)
{
    const QString window = start();
    waitUntilActive(window);
    m_desktop.act({u"windowminimize"_s, u"--sync"_s, window});
    waitUntilGone(kMainWindow);
    startAgain();
    EXPECT_EQ(m_desktop.waitForWindow(kMainWindow), window);
    waitUntilActive(window);
    end();
}

TEST_F(ProgramOnDesktop, withoutANotificationAreaClosingMinimizesAndSaysSoOnce)
{
    const QString window = start();
    waitUntilActive(window);
    m_desktop.close(window);
    // The note stands over the window, and has its name.
    test::waitUntil("the note", [&] { return m_desktop.active() != window; });
    m_desktop.act({u"key"_s, u"Return"_s});
    test::waitUntil("the icon",
                    [&] { return m_desktop.property(window, u"WM_STATE"_s).contains("Iconic"); });
    startAgain();
    waitUntilActive(window);
    m_desktop.close(window);
    test::waitUntil("the icon, without a word",
                    [&] { return m_desktop.property(window, u"WM_STATE"_s).contains("Iconic"); });
    end();
}

TEST_F(ProgramOnDesktop, withANotificationAreaClosingHidesAndTheIconBringsTheWindowBack)
{
    m_desktop.startTray();
    const QString window = start();
    waitUntilActive(window);
    m_desktop.close(window);
    test::waitUntil("the window to be hidden",
                    [&] { return !m_desktop.property(window, u"WM_STATE"_s).contains("Normal"); });
    m_desktop.doubleClick({11, 1'004});
    waitUntilActive(m_desktop.waitForWindow(kMainWindow));
    end();
}

TEST_F(ProgramOnDesktop, aDoubleClickOnTheIconRestoresAMinimizedWindow)
{
    m_desktop.startTray();
    const QString window = start();
    waitUntilActive(window);
    m_desktop.act({u"windowminimize"_s, u"--sync"_s, window});
    waitUntilGone(kMainWindow);
    m_desktop.doubleClick({11, 1'004});
    waitUntilActive(m_desktop.waitForWindow(kMainWindow));
    end();
}

TEST_F(ProgramOnDesktop, aHiddenStartShowsItsWindowWhenItIsWanted)
{
    m_desktop.startTray();
    startHidden();
    static_cast<void>(m_desktop.waitForWindow(kDropZone));
    // What works on tasks has started whole.
    download("/one.mp4");
    static_cast<void>(m_desktop.waitForWindow(kPopup));
    EXPECT_FALSE(isShown(kMainWindow));
    startAgain();
    waitUntilActive(m_desktop.waitForWindow(kMainWindow));
    end();
}

TEST_F(ProgramOnDesktop, thePopupTakesNoKeyboardAndKeepsOffPanels)
{
    m_desktop.startTray();
    const QString window = start();
    waitUntilActive(window);
    download("/one.mp4");
    const QString popup = m_desktop.waitForWindow(kPopup);
    constexpr int kPanelTop = 984;
    test::waitUntil("the whole popup", [&] {
        const QRect place = m_desktop.place(popup);
        return place.isValid() && place.bottom() < kPanelTop;
    });
    EXPECT_EQ(m_desktop.active(), window);
    waitUntilGone(kPopup);
    EXPECT_EQ(m_desktop.active(), window);
    end();
}

TEST_F(ProgramOnDesktop, theDropZoneStaysAboveAndWhereItWasPut)
{
    waitUntilActive(start());
    const QString zone = m_desktop.waitForWindow(kDropZone);
    EXPECT_TRUE(m_desktop.property(zone, u"_NET_WM_STATE"_s).contains("ABOVE"));
    const QPoint before = m_desktop.place(zone).center();
    m_desktop.drag(zone, before, {-300, 200});
    test::waitUntil("the stored place", [&] {
        const QPoint now = m_desktop.place(zone).topLeft();
        return m_settings->text(settings::keys::kDropZonePlace) ==
               u"%1,%2"_s.arg(now.x()).arg(now.y());
    });
    const QRect moved = m_desktop.place(zone);
    EXPECT_GT((moved.center() - before).manhattanLength(), 100);
    end();
    waitUntilActive(start());
    const QString again = m_desktop.waitForWindow(kDropZone);
    test::waitUntil("its place", [&] { return m_desktop.place(again) == moved; });
    end();
}

TEST_F(ProgramOnDesktop, aWatchPageThatAnotherProgramCopiesIsOffered)
{
    waitUntilActive(start());
    m_desktop.copy(u"http://www.youtube.com/watch?v=abcdefghijk"_s);
    static_cast<void>(m_desktop.waitForWindow(kAddTask));
    end();
}

TEST_F(ProgramOnDesktop, anAddressThatIsCutOutOfADialogStaysOut)
{
    const QString window = start();
    waitUntilActive(window);
    m_desktop.press(window, u"ctrl+n"_s);
    const QString dialog = m_desktop.waitForWindow(kAddTask);
    waitUntilActive(dialog);
    m_desktop.act({u"type"_s, u"http://www.youtube.com/watch?v=abcdefghijk"_s});
    m_desktop.press(dialog, u"ctrl+a"_s);
    m_desktop.press(dialog, u"ctrl+x"_s);
    test::waitUntil("the cut", [this] { return m_desktop.copied().contains("abcdefghijk"); });
    m_desktop.act({u"type"_s, u"left"_s});
    m_desktop.press(dialog, u"ctrl+a"_s);
    m_desktop.press(dialog, u"ctrl+c"_s);
    test::waitUntil("the copy", [this] { return m_desktop.copied().endsWith("left"); });
    EXPECT_EQ(m_desktop.copied(), "left");
    end();
}

TEST_F(ProgramOnDesktop, textDroppedOnTheDropZoneIsOfferedAndAFileIsNot)
{
    // Away from the main window, which would welcome a text on its way.
    m_settings->setText(settings::keys::kDropZonePlace, u"1192,24"_s);
    waitUntilActive(start());
    const QPoint zone = m_desktop.place(m_desktop.waitForWindow(kDropZone)).center();
    m_desktop.dropFileInVain(m_sandbox.file(u"clip.mp4"_s), zone);
    m_desktop.dropText(u"http://site.example/clip"_s, zone);
    static_cast<void>(m_desktop.waitForWindow(kAddTask));
    EXPECT_EQ(m_desktop.windowCount(kAddTask), 1);
    end();
}

TEST_F(ProgramOnDesktop, textDroppedOnTheWindowIsOffered)
{
    const QString window = start();
    waitUntilActive(window);
    m_desktop.dropText(u"http://site.example/clip"_s, m_desktop.place(window).center());
    static_cast<void>(m_desktop.waitForWindow(kAddTask));
    end();
}

TEST_F(ProgramOnDesktop, enterAndEscapeDoNotCloseTheMainWindow)
{
    const QString window = start();
    waitUntilActive(window);
    m_desktop.press(window, u"Escape"_s);
    m_desktop.press(window, u"Return"_s);
    // A key whose effect shows comes after both.
    m_desktop.press(window, u"ctrl+n"_s);
    static_cast<void>(m_desktop.waitForWindow(kAddTask));
    EXPECT_TRUE(isShown(kMainWindow));
    end();
}

TEST_F(ProgramOnDesktop, theCaptionMovesTheWindowAndADoubleClickMaximizesItOffThePanel)
{
    m_desktop.startTray();
    const QString window = start();
    waitUntilActive(window);
    const QRect before = m_desktop.place(window);
    const QPoint caption = before.topLeft() + QPoint(before.width() / 2, 14);
    m_desktop.drag(window, caption, {50, 50});
    EXPECT_NE(m_desktop.place(window).topLeft(), before.topLeft());
    const QPoint moved = m_desktop.place(window).topLeft() + QPoint(before.width() / 2, 14);
    m_desktop.doubleClick(moved);
    test::waitUntil("the work area",
                    [&] { return m_desktop.place(window) == QRect(0, 0, 1'280, 984); });
    end();
}

TEST_F(ProgramOnDesktop, theEdgesResizeTheWindow)
{
    const QString window = start();
    waitUntilActive(window);
    const QRect before = m_desktop.place(window);
    m_desktop.drag(window, {before.right() - 1, before.center().y()}, {60, 0});
    EXPECT_GT(m_desktop.place(window).width(), before.width());
    EXPECT_EQ(m_desktop.place(window).height(), before.height());
    EXPECT_EQ(m_desktop.place(window).topLeft(), before.topLeft());
    end();
}

TEST_F(ProgramOnDesktop, withoutABrowserTheFirstPageThatGivesNothingSaysWhatToInstall)
{
    m_site.on("/page", test::answer("<p>Films come by script.", "text/html"));
    m_settings->setNumber(settings::keys::kMaxRetry, 0);
    qputenv("TOLLIVAR_BROWSER", "/nonexistent");
    waitUntilActive(start());
    qunsetenv("TOLLIVAR_BROWSER");
    for (int i = 0; i < 2; ++i) {
        ProgramRun terminal(m_sandbox, u"tollivar-cli"_s,
                            {u"download"_s, u"--folder"_s, u"out"_s, m_site.address("/page")});
        EXPECT_EQ(terminal.finish(), 0);
    }
    // The note has the window's name.
    test::waitUntil("the note", [&] { return m_desktop.windowCount(kMainWindow) == 2; });
    m_desktop.act({u"key"_s, u"Return"_s});
    test::waitUntil("the note to go", [&] { return m_desktop.windowCount(kMainWindow) == 1; });
    end();
}

TEST_F(ProgramOnDesktop, aDialogStandsOverTheMiddleOfItsWindow)
{
    const QString window = start();
    waitUntilActive(window);
    m_desktop.press(window, u"ctrl+n"_s);
    const QString dialog = m_desktop.waitForWindow(kAddTask);
    test::waitUntil("the middle", [&] {
        const QPoint apart = m_desktop.place(dialog).center() - m_desktop.place(window).center();
        return apart.manhattanLength() <= 4;
    });
    end();
}

} // namespace
} // namespace tollivar::app
