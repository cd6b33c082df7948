#pragma once

#include "ui/dialog/dialog_texts.h"
#include "ui/dialog/ui_lib_dialog.h"

namespace tollivar::ui {

/// The small window that stands while an update check is under way that somebody asked for.
///
/// Threads: the main thread.
class CheckingDialog final : public CUILibDialog {
    Q_OBJECT

public:
    CheckingDialog(QWidget *owner, const DialogTexts &texts);

    void Notify(const DuiLib::SkinEvent &event) override;
};

} // namespace tollivar::ui
