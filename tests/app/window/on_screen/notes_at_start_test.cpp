#include "tests/app/window/on_screen/program_fixture.h"
#include "tests/support/wait_until.h"
#include "tests/support/window_driver.h"
#include "ui/dialogs/cant_play_dlg.h"
#include "ui/skin/paint_manager.h"
#include "ui/skin/text_ui.h"

#include <QApplication>
#include <QCheckBox>
#include <QMessageBox>

namespace tollivar::app {

using namespace Qt::StringLiterals;
using DuiLib::CPaintManagerUI;

/// What the program has to say about its skin as it starts.
class SkinNote : public ProgramTest {
protected:
    void TearDown() override
    {
        ProgramTest::TearDown();
        CPaintManagerUI::SetInstance();
    }

    /// Starts the program and gives what its note says.
    QString noteAtStart()
    {
        QString said;
        test::whenModalOpens([&said](QWidget &opened) {
            auto *note = qobject_cast<QMessageBox *>(&opened);
            ASSERT_NE(note, nullptr);
            EXPECT_EQ(note->icon(), QMessageBox::Warning);
            said = note->text();
            note->accept();
        });
        start();
        test::waitUntil("the note", [&said] { return !said.isEmpty(); });
        return said;
    }
};

TEST_F(SkinNote, namesAnArchiveThatCannotBeUsed)
{
    const QString archive = m_sandbox.write(u"default.zip"_s, "PK\x03\x04 and no more");
    CPaintManagerUI::SetResourceZip(archive);
    const QString said = noteAtStart();
    EXPECT_TRUE(said.startsWith(u"The skin has faults"_s)) << said.toStdString();
    EXPECT_TRUE(said.contains(archive)) << said.toStdString();
    EXPECT_EQ(window().size(), QSize(900, 560)) << "not the built-in look";
}

TEST_F(SkinNote, namesAFolderThatIsNotThere)
{
    CPaintManagerUI::SetResourcePath(m_sandbox.file(u"skins/default"_s));
    const QString said = noteAtStart();
    EXPECT_TRUE(said.contains(m_sandbox.file(u"skins/default"_s))) << said.toStdString();
}

/// The note in the caption that the flash player is too old; none is installed for the tests.
class FlashNoteOfProgram : public ProgramTest {
protected:
    void SetUp() override
    {
        ProgramTest::SetUp();
        if (ui::isNewEnough(platform::flashPlayerVersion())) {
            GTEST_SKIP() << "a flash player is installed";
        }
        m_settings->setFlag(settings::keys::kNoRemindFlashVersion, false);
        start();
    }

    static DuiLib::CTextUI &caption()
    {
        return *test::control<DuiLib::CTextUI>(window(), u"textCaption"_s);
    }
    static bool isNote() { return caption().markup().contains(u"{a}"_s); }
    static ui::CCantPlayDlg *help() { return window().findChild<ui::CCantPlayDlg *>(); }
    /// Follows the note's link, answers the help it opens, and waits until that has gone.
    static void silence(bool isSilent)
    {
        Q_EMIT caption().linkActivated(u"#"_s);
        ASSERT_NE(help(), nullptr);
        EXPECT_TRUE(help()->isVisible());
        test::control<QCheckBox>(*help(), u"chkDonotShowMsg"_s)->setChecked(isSilent);
        test::click(*test::control(*help(), u"btnCancel"_s));
        test::waitUntil("the help to go", [] { return help() == nullptr; });
    }
};

TEST_F(FlashNoteOfProgram, itsLinkOpensTheHelpWhoseChoiceSilencesIt)
{
    EXPECT_TRUE(isNote());
    silence(true);
    test::waitUntil("the program's name",
                    [] { return caption().markup() == u"{b}Tollivar{/b}"_s; });
    EXPECT_TRUE(m_settings->flag(settings::keys::kNoRemindFlashVersion));
}

TEST_F(FlashNoteOfProgram, staysUntilItIsSilenced)
{
    silence(false);
    QCoreApplication::processEvents();
    EXPECT_TRUE(isNote());
}

} // namespace tollivar::app
