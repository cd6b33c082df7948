#include "tests/support/window_driver.h"
#include "tests/ui/window_world.h"
#include "ui/dialogs/cant_play_dlg.h"
#include "ui/skin/text_ui.h"

#include <QCheckBox>
#include <QDir>
#include <QPointer>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

class CantPlayDlgTest : public ::testing::Test {
protected:
    CCantPlayDlg &open(const platform::FlashVersion &version)
    {
        m_dialog = new CCantPlayDlg(nullptr, m_world.settings(), m_texts, version);
        m_dialog->show();
        return *m_dialog;
    }
    QString shown()
    {
        return test::control<DuiLib::CTextUI>(*m_dialog, u"textFlashIEVersion"_s)->markup();
    }

    /// Layouts are kept in the working folder.
    void SetUp() override { QDir::setCurrent(m_world.sandbox().path()); }
    void TearDown() override { QDir::setCurrent(QDir::rootPath()); }

    test::WindowWorld m_world;
    WindowTexts m_texts = m_world.texts();
    QPointer<CCantPlayDlg> m_dialog;
};

TEST_F(CantPlayDlgTest, withoutAPlayerItTellsTheOldVersionByZeros)
{
    open({});
    EXPECT_EQ(shown(),
              u"{b}Your current flash player version is too old (0,0,0,0), you may need to "
              u"upgrade your flash player to download videos.{/b}"_s);
    m_dialog->close();
}

TEST_F(CantPlayDlgTest, itsLayoutIsStoredWhenItCloses)
{
    for (const QString &button : {u"btnOK"_s, u"btnCancel"_s}) {
        test::click(*test::control(open({}), button));
        EXPECT_TRUE(QFile::remove(u"layout.ini"_s)) << button.toStdString();
    }
}

TEST_F(CantPlayDlgTest, theNinthMajorVersionIsNewEnough)
{
    EXPECT_TRUE(isNewEnough({9, 0, 0, 0}));
    EXPECT_FALSE(isNewEnough({8, 9, 9, 9}));
    open({9, 0, 0, 0});
    EXPECT_EQ(shown(), u"Your current flash player for IE is : 9,0,0,0"_s);
    m_dialog->close();
}

TEST_F(CantPlayDlgTest, cancellingStoresTheChoiceEitherWay)
{
    for (const bool isSilent : {true, false}) {
        CCantPlayDlg &dialog = open({});
        QSignalSpy told(&dialog, &CCantPlayDlg::choiceStored);
        test::control<QCheckBox>(dialog, u"chkDonotShowMsg"_s)->setChecked(isSilent);
        test::click(*test::control(dialog, u"btnCancel"_s));
        EXPECT_EQ(told.count(), 1);
        EXPECT_EQ(m_world.settings().flag(settings::keys::kNoRemindFlashVersion), isSilent);
    }
}

TEST_F(CantPlayDlgTest, okStoresNothing)
{
    CCantPlayDlg &dialog = open({});
    test::control<QCheckBox>(dialog, u"chkDonotShowMsg"_s)->setChecked(true);
    test::click(*test::control(dialog, u"btnOK"_s));
    EXPECT_FALSE(m_world.settings().flag(settings::keys::kNoRemindFlashVersion));
}

TEST_F(CantPlayDlgTest, theLinkAsksForTheDownloadPage)
{
    CCantPlayDlg &dialog = open({});
    QSignalSpy wanted(&dialog, &CCantPlayDlg::upgradeWanted);
    Q_EMIT test::control<DuiLib::CTextUI>(dialog, u"textUpgradeFlash"_s)->linkActivated(u"#"_s);
    EXPECT_EQ(wanted.count(), 1);
    dialog.close();
}

} // namespace tollivar::ui
