#include "tests/support/window_driver.h"
#include "tests/ui/window_world.h"
#include "ui/dialogs/confirm_delete_dlg.h"
#include "ui/skin/paint_manager.h"

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
    void SetUp() override { test::useDefaultSkin(); }
};

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
