#include "tests/app/window/program_on_desktop.h"

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;

/// The menu of the program's icon in a notification area.
class TrayMenu : public ProgramOnDesktop {
protected:
    void SetUp() override
    {
        ProgramOnDesktop::SetUp();
        m_desktop.startTray();
        m_window = start();
        waitUntilActive(m_window);
    }

    void rightClickIcon() const { m_desktop.click({11, 1'004}, 3); }
    void clickDesktop() const { m_desktop.click({1'270, 900}); }
    bool isOpen() const
    {
        const auto windows =
            m_desktop.ask({u"search"_s, u"--onlyvisible"_s, u"--class"_s, u"^Tollivar$"_s})
                .split('\n');
        // Nobody manages it, as nobody does the icon and its tip; but those are small.
        constexpr int kSmall = 100;
        return std::any_of(windows.begin(), windows.end(), [this](const QByteArray &found) {
            const QString window = QString::fromLatin1(found);
            return m_desktop.property(window, u"WM_STATE"_s).contains("not found") &&
                   m_desktop.place(window).height() > kSmall;
        });
    }
    void openMenu() const
    {
        rightClickIcon();
        test::waitUntil("the menu", [this] { return isOpen(); });
    }
    void waitUntilClosed() const
    {
        test::waitUntil("the menu to go", [this] { return !isOpen(); });
    }
    void hideWindow() const
    {
        m_desktop.close(m_window);
        waitUntilGone(kMainWindow);
    }

    QString m_window;
};

TEST_F(TrayMenu, opensWhileAnotherProgramIsInFrontAndClosesOnAClickElsewhere)
{
    for (int round = 0; round < 2; ++round) {
        static_cast<void>(m_desktop.startOther());
        openMenu();
        clickDesktop();
        waitUntilClosed();
        EXPECT_TRUE(isShown(kMainWindow));
    }
    end();
}

TEST_F(TrayMenu, opensAndClosesTheSameWhileTheWindowIsHidden)
{
    hideWindow();
    static_cast<void>(m_desktop.startOther());
    openMenu();
    EXPECT_FALSE(isShown(kMainWindow));
    clickDesktop();
    waitUntilClosed();
    EXPECT_FALSE(isShown(kMainWindow));
    end();
}

TEST_F(TrayMenu, itsFirstEntryHidesTheWindowAndBringsItBack)
{
    openMenu();
    m_desktop.act({u"key"_s, u"Down"_s, u"Return"_s});
    waitUntilGone(kMainWindow);
    openMenu();
    m_desktop.act({u"key"_s, u"Down"_s, u"Return"_s});
    waitUntilActive(m_desktop.waitForWindow(kMainWindow));
    end();
}

TEST_F(TrayMenu, itsLastEntryEndsTheProgramAlsoWhileTheWindowIsHidden)
{
    hideWindow();
    openMenu();
    m_desktop.act({u"key"_s, u"Up"_s, u"Return"_s});
    EXPECT_EQ(m_program->finish(), 0);
}

} // namespace
} // namespace tollivar::app
