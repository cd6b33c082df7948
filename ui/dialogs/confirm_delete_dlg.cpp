#include "ui/dialogs/confirm_delete_dlg.h"

#include "ui/layout/window_layout.h"

#include <QAbstractButton>

#include <array>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kControls = {
    DuiLib::RequiredControl{"Option"_L1, "radioDelTaskOnly"_L1, DuiLib::OptionLook::Any},
    DuiLib::RequiredControl{"Option"_L1, "radioDelTaskAll"_L1, DuiLib::OptionLook::Any},
    DuiLib::RequiredControl{"Button"_L1, "btnOK"_L1},
    DuiLib::RequiredControl{"Button"_L1, "btnCancel"_L1},
    DuiLib::RequiredControl{"Button"_L1, "btnClose"_L1},
};

const QString kSection = u"DIALOG_CONFIRMDEL"_s;

} // namespace

CConfirmDeleteDlg::CConfirmDeleteDlg(QWidget *owner, const DialogTexts &texts) : CUILibDialog(owner)
{
    createFace(u"DialogDeleteTask.xml"_s, kControls);
    applyDialogTexts(*this, kSection, texts);
    restoreLayout(*this, kSection);
}

void CConfirmDeleteDlg::Notify(const DuiLib::SkinEvent &event)
{
    if (event.type != DuiLib::events::kClick) {
        return;
    }
    if (event.name == "btnOK"_L1) {
        const bool withFiles = control<QAbstractButton>("radioDelTaskAll"_L1).isChecked();
        m_files = withFiles ? tasks::FileOnRemoval::Delete : tasks::FileOnRemoval::Keep;
        accept();
    } else if (event.name == "btnCancel"_L1 || event.name == "btnClose"_L1) {
        reject();
    }
}

void CConfirmDeleteDlg::done(int result)
{
    saveLayout(*this, kSection);
    CUILibDialog::done(result);
}

} // namespace tollivar::ui
