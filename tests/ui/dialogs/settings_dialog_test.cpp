#include "tests/support/window_driver.h"
#include "tests/ui/window_world.h"
#include "ui/dialogs/settings_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>
#include <QStandardItemModel>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using settings::CGeneralOptions;
using settings::COptionsManager;

class SettingsDialogTest : public ::testing::Test {
protected:
    CSettingsDialog &open(ClipboardWatch watch = ClipboardWatch::InBackground)
    {
        m_options.LoadAll();
        m_dialog = std::make_unique<CSettingsDialog>(nullptr, m_options, m_texts, watch);
        m_dialog->show();
        return *m_dialog;
    }

    QCheckBox &box(const QString &name) { return *test::control<QCheckBox>(*m_dialog, name); }
    QComboBox &list(const QString &name) { return *test::control<QComboBox>(*m_dialog, name); }
    void choose(const QString &name, int item)
    {
        list(name).setCurrentIndex(item);
        Q_EMIT list(name).activated(item);
    }
    void click(const QString &name) { test::click(*test::control(*m_dialog, name)); }
    CGeneralOptions stored()
    {
        CGeneralOptions options(m_world.settings());
        options.Load();
        return options;
    }

    test::WindowWorld m_world;
    COptionsManager m_options{m_world.settings()};
    WindowTexts m_texts = m_world.texts();
    std::unique_ptr<CSettingsDialog> m_dialog;
};

TEST_F(SettingsDialogTest, showsWhatIsStored)
{
    m_world.settings().setNumber(settings::keys::kMaxSimDownloads, 1);
    m_world.settings().setNumber(settings::keys::kMaxRetry, 0);
    m_world.settings().setNumber(settings::keys::kCheckUpdate, 2);
    m_world.settings().setFlag(settings::keys::kShowDragZone, false);
    open();
    EXPECT_EQ(list(u"cbSimDownloads"_s).currentIndex(), 0);
    EXPECT_EQ(list(u"cbSimDownloads"_s).currentText(), u"1"_s);
    EXPECT_EQ(list(u"cbRetryTime"_s).currentIndex(), 0);
    EXPECT_EQ(list(u"cbRetryTime"_s).currentText(), u"0"_s);
    EXPECT_EQ(list(u"cbUpdatesMode"_s).currentIndex(), 2);
    EXPECT_TRUE(box(u"chkUpdates"_s).isChecked());
    EXPECT_FALSE(box(u"chkDragDrop"_s).isChecked());
}

TEST_F(SettingsDialogTest, okStoresWhatWasChanged)
{
    CSettingsDialog &dialog = open();
    QSignalSpy changed(&dialog, &CSettingsDialog::optionsChanged);
    choose(u"cbSimDownloads"_s, 19);
    choose(u"cbRetryTime"_s, 10);
    choose(u"cbUpdatesMode"_s, 0);
    box(u"chkDragDrop"_s).click();
    box(u"chkMinizeDrag"_s).click();
    box(u"chkRetryParse"_s).click();
    click(u"btnOK"_s);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(stored().m_nMaxSimDownloads, 20);
    EXPECT_EQ(stored().m_nMaxRetry, 10);
    EXPECT_EQ(stored().m_nCheckUpdate, 0);
    EXPECT_FALSE(stored().m_bShowDragZone);
    EXPECT_TRUE(stored().m_bMinimizeDragTask);
    EXPECT_FALSE(stored().m_bAutoParseOriUrl);
}

TEST_F(SettingsDialogTest, cancelAndCloseLeaveTheStoredOptionsUntouched)
{
    for (const QString &button : {u"btnCancel"_s, u"btnClose"_s}) {
        open();
        choose(u"cbSimDownloads"_s, 7);
        box(u"chkDragDrop"_s).click();
        click(button);
        EXPECT_EQ(stored().m_nMaxSimDownloads, 5);
        EXPECT_TRUE(stored().m_bShowDragZone);
        EXPECT_EQ(m_dialog->result(), QDialog::Rejected);
    }
}

TEST_F(SettingsDialogTest, choosingNeverLocksTheListUntilTheCheckBoxFreesIt)
{
    m_world.settings().setNumber(settings::keys::kCheckUpdate, 2);
    open();
    choose(u"cbUpdatesMode"_s, 3);
    EXPECT_FALSE(box(u"chkUpdates"_s).isChecked());
    EXPECT_FALSE(list(u"cbUpdatesMode"_s).isEnabled());
    const auto *items = qobject_cast<QStandardItemModel *>(list(u"cbUpdatesMode"_s).model());
    EXPECT_FALSE(items->item(3)->isEnabled());
    box(u"chkUpdates"_s).click();
    EXPECT_TRUE(list(u"cbUpdatesMode"_s).isEnabled());
    EXPECT_TRUE(items->item(3)->isEnabled());
    EXPECT_EQ(list(u"cbUpdatesMode"_s).currentIndex(), 1);
    box(u"chkUpdates"_s).click();
    EXPECT_EQ(list(u"cbUpdatesMode"_s).currentIndex(), 3);
    click(u"btnOK"_s);
    EXPECT_EQ(stored().m_nCheckUpdate, 3);
}

TEST_F(SettingsDialogTest, aListWithTooFewModesIsBorne)
{
    open();
    list(u"cbUpdatesMode"_s).removeItem(3);
    for (const int mode : {3, 1}) {
        box(u"chkUpdates"_s).click();
        click(u"btnOK"_s);
        EXPECT_EQ(stored().m_nCheckUpdate, mode);
        m_dialog->show();
    }
}

TEST_F(SettingsDialogTest, aNumberBeyondTheListIsShownAndKept)
{
    m_world.settings().setNumber(settings::keys::kMaxSimDownloads, 77);
    m_world.settings().setNumber(settings::keys::kMaxRetry, -2);
    open();
    EXPECT_EQ(list(u"cbSimDownloads"_s).currentText(), u"77"_s);
    EXPECT_EQ(list(u"cbRetryTime"_s).currentText(), u"-2"_s);
    click(u"btnOK"_s);
    EXPECT_EQ(stored().m_nMaxSimDownloads, 77);
    EXPECT_EQ(stored().m_nMaxRetry, -2);
}

TEST_F(SettingsDialogTest, anUpdateModeBeyondTheListIsShownAndKept)
{
    for (const int mode : {-1, 4, 77}) {
        m_world.settings().setNumber(settings::keys::kCheckUpdate, mode);
        open();
        EXPECT_EQ(list(u"cbUpdatesMode"_s).currentText(), QString::number(mode));
        EXPECT_TRUE(list(u"cbUpdatesMode"_s).isEnabled());
        EXPECT_TRUE(box(u"chkUpdates"_s).isChecked());
        click(u"btnOK"_s);
        EXPECT_EQ(stored().m_nCheckUpdate, mode);
        choose(u"cbUpdatesMode"_s, 2);
        choose(u"cbUpdatesMode"_s, 4);
        click(u"btnOK"_s);
        EXPECT_EQ(stored().m_nCheckUpdate, mode);
        choose(u"cbUpdatesMode"_s, 0);
        click(u"btnOK"_s);
        EXPECT_EQ(stored().m_nCheckUpdate, 0);
    }
}

TEST_F(SettingsDialogTest, aModeThatTheListKnowsGetsNoEntryOfItsOwn)
{
    for (const int mode : {0, 1, 2, 3}) {
        m_world.settings().setNumber(settings::keys::kCheckUpdate, mode);
        open();
        EXPECT_EQ(list(u"cbUpdatesMode"_s).count(), 4);
        EXPECT_EQ(list(u"cbUpdatesMode"_s).currentIndex(), mode);
    }
}

TEST_F(SettingsDialogTest, whatIsChangedSurvivesTheDialogAndShowsInTheNext)
{
    open();
    choose(u"cbSimDownloads"_s, 7);
    choose(u"cbRetryTime"_s, 4);
    choose(u"cbUpdatesMode"_s, 2);
    for (const QString &name : {u"chkDragDrop"_s, u"chkMinizeDrag"_s, u"chkRetryParse"_s}) {
        box(name).click();
    }
    click(u"btnOK"_s);
    open();
    EXPECT_EQ(list(u"cbSimDownloads"_s).currentText(), u"8"_s);
    EXPECT_EQ(list(u"cbRetryTime"_s).currentText(), u"4"_s);
    EXPECT_EQ(list(u"cbUpdatesMode"_s).currentIndex(), 2);
    EXPECT_FALSE(box(u"chkDragDrop"_s).isChecked());
    EXPECT_TRUE(box(u"chkMinizeDrag"_s).isChecked());
    EXPECT_FALSE(box(u"chkRetryParse"_s).isChecked());
}

TEST_F(SettingsDialogTest, saysWhereTheClipboardCannotBeWatchedInTheBackground)
{
    open(ClipboardWatch::InFrontOnly);
    EXPECT_EQ(test::control<QLabel>(*m_dialog, u"textWaylandNote"_s)->text(),
              u"On this desktop the clipboard cannot be watched in the background."_s);
    open(ClipboardWatch::InBackground);
    EXPECT_EQ(test::control<QLabel>(*m_dialog, u"textWaylandNote"_s)->text(), QString());
}

TEST_F(SettingsDialogTest, hasRoomForThatInEveryLanguage)
{
    m_world.languages().load();
    for (const QString &language : m_world.languages().names()) {
        m_world.languages().apply(language);
        open(ClipboardWatch::InFrontOnly);
        const auto &note = *test::control<QLabel>(*m_dialog, u"textWaylandNote"_s);
        EXPECT_FALSE(note.text().isEmpty()) << language.toStdString();
        EXPECT_LE(note.heightForWidth(note.width()), note.height()) << language.toStdString();
        for (const QComboBox *each : m_dialog->findChildren<QComboBox *>()) {
            EXPECT_TRUE(each->parentWidget()->rect().contains(each->geometry()))
                << language.toStdString() << ' ' << each->objectName().toStdString();
        }
    }
}

TEST(ClipboardWatchOn, isInFrontOnlyOnEveryKindOfWayland)
{
    EXPECT_EQ(clipboardWatchOn(u"wayland"_s), ClipboardWatch::InFrontOnly);
    EXPECT_EQ(clipboardWatchOn(u"wayland-egl"_s), ClipboardWatch::InFrontOnly);
    EXPECT_EQ(clipboardWatchOn(u"xcb"_s), ClipboardWatch::InBackground);
    EXPECT_EQ(clipboardWatchOn(u"offscreen"_s), ClipboardWatch::InBackground);
    EXPECT_EQ(clipboardWatchOn({}), ClipboardWatch::InBackground);
}

} // namespace tollivar::ui
