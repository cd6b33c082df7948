#include "tests/support/sandbox.h"
#include "tests/support/window_driver.h"
#include "tests/ui/window_world.h"
#include "ui/dialogs/confirm_delete_dlg.h"
#include "ui/layout/window_layout.h"
#include "ui/skin/paint_manager.h"

#include <QDir>
#include <QRadioButton>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

QString noText(const QString & /*section*/, const QString & /*control*/)
{
    return {};
}

/// Opens the question, chooses both options in turn as told, and presses a button.
struct Asked {
    int result = 0;
    tasks::FileOnRemoval files = tasks::FileOnRemoval::Keep;
};

Asked ask(const QString &option, const QString &button)
{
    CConfirmDeleteDlg dialog(nullptr, noText);
    dialog.show();
    if (!option.isEmpty()) {
        test::control<QRadioButton>(dialog, option)->click();
    }
    test::click(*test::control(dialog, button));
    EXPECT_FALSE(dialog.isVisible());
    return {dialog.result(), dialog.files()};
}

} // namespace

class ConfirmDeleteDlg : public ::testing::Test {
protected:
    void SetUp() override
    {
        test::useDefaultSkin();
        // Layouts are kept in the working folder.
        QDir::setCurrent(m_sandbox.path());
    }
    void TearDown() override
    {
        setLayoutMode(LayoutMode::Ignore);
        QDir::setCurrent(QDir::rootPath());
    }

    test::Sandbox m_sandbox;
};

TEST_F(ConfirmDeleteDlg, itsLayoutIsStoredHoweverItClosesAndReturnsInTheModeForIt)
{
    QSize size;
    for (const QString &button : {u"btnOK"_s, u"btnCancel"_s, u"btnClose"_s}) {
        CConfirmDeleteDlg dialog(nullptr, noText);
        size = dialog.size() + QSize(31, 17);
        dialog.show();
        dialog.resize(size);
        test::click(*test::control(dialog, button));
        EXPECT_TRUE(QFile::exists(u"layout.ini"_s)) << button.toStdString();
        if (button != u"btnClose"_s) {
            QFile::remove(u"layout.ini"_s);
        }
    }
    EXPECT_NE(CConfirmDeleteDlg(nullptr, noText).size(), size);
    setLayoutMode(LayoutMode::Restore);
    EXPECT_EQ(CConfirmDeleteDlg(nullptr, noText).size(), size);
}

TEST_F(ConfirmDeleteDlg, aFolderThatCannotBeWrittenIsNoTrouble)
{
    QDir::setCurrent(u"/proc"_s);
    EXPECT_EQ(ask({}, u"btnOK"_s).result, QDialog::Accepted);
}

TEST_F(ConfirmDeleteDlg, keepsFilesUnlessTheyAreChosen)
{
    const Asked asked = ask({}, u"btnOK"_s);
    EXPECT_EQ(asked.result, QDialog::Accepted);
    EXPECT_EQ(asked.files, tasks::FileOnRemoval::Keep);
    EXPECT_EQ(ask(u"radioDelTaskOnly"_s, u"btnOK"_s).files, tasks::FileOnRemoval::Keep);
}

TEST_F(ConfirmDeleteDlg, takesTheFilesAlongWhenTheyAreChosen)
{
    EXPECT_EQ(ask(u"radioDelTaskAll"_s, u"btnOK"_s).files, tasks::FileOnRemoval::Delete);
}

TEST_F(ConfirmDeleteDlg, closingItNeverTakesFilesAlong)
{
    for (const QString &button : {u"btnCancel"_s, u"btnClose"_s}) {
        const Asked asked = ask(u"radioDelTaskAll"_s, button);
        EXPECT_EQ(asked.result, QDialog::Rejected);
        EXPECT_EQ(asked.files, tasks::FileOnRemoval::Keep);
    }
}

TEST_F(ConfirmDeleteDlg, withNeitherOptionChosenTheFilesStay)
{
    CConfirmDeleteDlg dialog(nullptr, noText);
    for (const auto &name : {u"radioDelTaskOnly"_s, u"radioDelTaskAll"_s}) {
        auto *option = test::control<QRadioButton>(dialog, name);
        option->setAutoExclusive(false);
        option->setChecked(false);
    }
    test::click(*test::control(dialog, u"btnOK"_s));
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.files(), tasks::FileOnRemoval::Keep);
}

} // namespace tollivar::ui
