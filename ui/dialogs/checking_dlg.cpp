#include "ui/dialogs/checking_dlg.h"

#include <QProgressBar>

#include <array>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kControls = {
    DuiLib::RequiredControl{"Progress"_L1, "progress"_L1},
    DuiLib::RequiredControl{"Button"_L1, "btnClose"_L1},
};

} // namespace

CheckingDialog::CheckingDialog(QWidget *owner, const DialogTexts &texts) : CUILibDialog(owner)
{
    createFace(u"DialogChecking.xml"_s, kControls);
    applyDialogTexts(*this, u"DIALOG_CHECKING"_s, texts);
    // How long a server takes nobody knows.
    control<QProgressBar>("progress"_L1).setRange(0, 0);
}

void CheckingDialog::Notify(const DuiLib::SkinEvent &event)
{
    if (event.type == DuiLib::events::kClick && event.name == "btnClose"_L1) {
        hide();
    }
}

} // namespace tollivar::ui
