#include "app/window/player_help.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"
#include "ui/dialogs/cant_play_dlg.h"
#include "ui/skin/paint_manager.h"

#include <QApplication>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;

class PlayerHelpTest : public ::testing::Test {
protected:
    void SetUp() override { DuiLib::CPaintManagerUI::SetInstance(); }

    QList<ui::CCantPlayDlg *> windows() const { return m_owner.findChildren<ui::CCantPlayDlg *>(); }

    test::Sandbox m_sandbox;
    settings::SettingsStore m_settings{m_sandbox.file(u"settings.ini"_s)};
    platform::FlashVersion m_installed{};
    QWidget m_owner;
    PlayerHelp m_help{m_settings,
                      {.text = [](const QString &id) { return id; },
                       .dialog = [](const QString &, const QString &) { return QString(); },
                       .menu = {},
                       .languages = {},
                       .currentLanguage = {},
                       .applyLanguage = {}},
                      [this] { return m_installed; }};
};

TEST_F(PlayerHelpTest, theNoteIsAboutThePlayerThatIsInstalledNow)
{
    EXPECT_TRUE(m_help.isNoteWanted());
    m_installed = {32, 0, 0, 465};
    EXPECT_FALSE(m_help.isNoteWanted());
    m_installed = {8, 0, 0, 0};
    EXPECT_TRUE(m_help.isNoteWanted());
    m_settings.setFlag(settings::keys::kNoRemindFlashVersion, true);
    EXPECT_FALSE(m_help.isNoteWanted());
}

TEST_F(PlayerHelpTest, oneWindowIsOpenHoweverOftenItIsAskedFor)
{
    m_help.show(m_owner);
    m_help.show(m_owner);
    ASSERT_EQ(windows().size(), 1);
    EXPECT_TRUE(windows().front()->isVisible());
}

TEST_F(PlayerHelpTest, aWindowThatWasClosedIsOpenedAnew)
{
    QSignalSpy stored(&m_help, &PlayerHelp::choiceStored);
    for (int opened = 1; opened <= 2; ++opened) {
        m_help.show(m_owner);
        ASSERT_EQ(windows().size(), 1);
        test::click(*test::control(*windows().front(), u"btnCancel"_s));
        EXPECT_EQ(stored.count(), opened);
        test::waitUntil("the window's end", [this] { return windows().isEmpty(); });
    }
}

} // namespace
} // namespace tollivar::app
