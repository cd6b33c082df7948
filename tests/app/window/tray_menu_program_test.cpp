#include "tests/app/window/program_on_desktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

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
        test::waitUntil("the icon", [this] {
            return hasWindow(
                [this](const QString &window) { return m_desktop.place(window).contains(kIcon); });
        });
    }

    void rightClickIcon() const { m_desktop.click(kIcon, 3); }
    void clickDesktop() const { m_desktop.click({1'270, 900}); }
    /// Whether one of the program's windows on the screen is such.
    bool hasWindow(const std::function<bool(const QString &window)> &isSuch) const
    {
        const auto windows =
            m_desktop.ask({u"search"_s, u"--onlyvisible"_s, u"--class"_s, u"^Tollivar$"_s})
                .split('\n');
        return std::any_of(windows.begin(), windows.end(), [&isSuch](const QByteArray &window) {
            return !window.isEmpty() && isSuch(QString::fromLatin1(window));
        });
    }
    bool isOpen() const
    {
        // Nobody manages it, as nobody does the icon and its tip; but those are small.
        constexpr int kSmall = 100;
        return hasWindow([this](const QString &window) {
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

    static constexpr QPoint kIcon{11, 1'004};
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

TEST_F(TrayMenu, itsFirstEntryHidesTheWindow)
{
    openMenu();
    m_desktop.act({u"key"_s, u"Down"_s, u"Return"_s});
    waitUntilGone(kMainWindow);
    end();
}

TEST_F(TrayMenu, itsFirstEntryBringsAHiddenWindowBack)
{
    hideWindow();
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
