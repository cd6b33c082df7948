#include "tests/support/wait_until.h"
#include "tests/ui/main_window/tollivar_dlg_fixture.h"
#include "ui/skin/text_ui.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

/// The caption, which says when the flash player is too old.
class FlashNote : public TollivarDlgTest {
protected:
    DuiLib::CTextUI &note()
    {
        return *test::control<DuiLib::CTextUI>(m_world.window(), u"textCaption"_s);
    }
    bool isShown() { return note().markup() == m_world.languages().text(u"strNoteFlashOld"_s); }
    bool isName() { return note().markup() == u"{b}Tollivar{/b}"_s; }
};

TEST_F(FlashNote, standsInTheCaptionWhenItIsWanted)
{
    m_world.wantsFlashNote = true;
    open();
    EXPECT_TRUE(isShown());
    EXPECT_TRUE(note().markup().contains(u"too old"_s)) << note().markup().toStdString();
}

TEST_F(FlashNote, leavesTheProgramsNameWhereItIsNotWanted)
{
    open();
    EXPECT_TRUE(isName()) << note().markup().toStdString();
}

TEST_F(FlashNote, comesAndGoesWhenTheWindowIsToldToLookAgain)
{
    m_world.wantsFlashNote = true;
    const CTollivarDlg &window = open();
    m_world.wantsFlashNote = false;
    window.port().post(platform::AppMessageId::FlashNote, 0, 0);
    test::waitUntil("the name", [this] { return isName(); });
    m_world.wantsFlashNote = true;
    window.port().post(platform::AppMessageId::FlashNote, 0, 0);
    test::waitUntil("the note", [this] { return isShown(); });
}

TEST_F(FlashNote, itsLinkAsksForTheHelpAboutIt)
{
    m_world.wantsFlashNote = true;
    CTollivarDlg &window = open();
    QSignalSpy help(&window, &CTollivarDlg::playerHelpWanted);
    QSignalSpy home(&window, &CTollivarDlg::homePageWanted);
    Q_EMIT note().linkActivated(u"#"_s);
    EXPECT_EQ(help.count(), 1);
    EXPECT_EQ(home.count(), 0);
    Q_EMIT test::control<DuiLib::CTextUI>(window, u"tCopyright"_s)->linkActivated(u"#"_s);
    EXPECT_EQ(help.count(), 1);
    EXPECT_EQ(home.count(), 1);
}

TEST_F(FlashNote, speaksTheChosenLanguage)
{
    m_world.wantsFlashNote = true;
    open();
    m_world.texts().applyLanguage(u"Deutsch"_s);
    EXPECT_TRUE(isShown());
    EXPECT_FALSE(note().markup().contains(u"too old"_s));
    EXPECT_TRUE(note().accessibleName().contains(u"Flash"_s));
    EXPECT_FALSE(note().accessibleName().contains(u'{')) << "readers hear no marks";
}

} // namespace tollivar::ui
