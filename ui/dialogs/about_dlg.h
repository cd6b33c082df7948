#pragma once

#include "ui/dialog/dialog_texts.h"
#include "ui/dialog/ui_lib_dialog.h"

namespace tollivar::ui {

/// Tells what the program is, its version and licence, and the libraries it stands on with theirs.
///
/// Threads: the main thread.
class AboutDialog final : public CUILibDialog {
    Q_OBJECT

public:
    AboutDialog(QWidget *owner, const DialogTexts &texts);

    void Notify(const DuiLib::SkinEvent &event) override;

Q_SIGNALS:
    void homePageWanted();
};

} // namespace tollivar::ui
