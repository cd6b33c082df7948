#pragma once

#include "tasks/task_manager.h"
#include "ui/dialog/dialog_texts.h"
#include "ui/dialog/ui_lib_dialog.h"

namespace tollivar::ui {

/// Asks whether tasks are removed alone or together with their downloaded files.
///
/// Threads: the main thread.
/// States:  exec() gives Accepted or Rejected; files() tells more than Keep only after Accepted.
class CConfirmDeleteDlg final : public CUILibDialog {
    Q_OBJECT

public:
    CConfirmDeleteDlg(QWidget *owner, const DialogTexts &texts);

    [[nodiscard]] tasks::FileOnRemoval files() const { return m_files; }

    void Notify(const DuiLib::SkinEvent &event) override;

private:
    void done(int result) override;

    tasks::FileOnRemoval m_files = tasks::FileOnRemoval::Keep;
};

} // namespace tollivar::ui
