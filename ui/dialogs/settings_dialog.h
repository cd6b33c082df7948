#pragma once

#include "settings/general_options.h"
#include "settings/options_manager.h"
#include "ui/dialog/ui_lib_dialog.h"
#include "ui/dialogs/window_texts.h"

class QComboBox;

namespace tollivar::ui {

/// When the program sees what other programs copy: always, or only while a window of its own has the
/// keyboard.
enum class ClipboardWatch { InBackground, InFrontOnly };

/// What the window system lets programs see, by the name that Qt gives it.
[[nodiscard]] ClipboardWatch clipboardWatchOn(const QString &windowSystem);

/// Edits a copy of the general options; only OK writes it back. Where the clipboard can't be watched
/// in the background, it says so.
///
/// Threads: the main thread.
/// Owns:    the copy; the options manager is borrowed and must outlive the dialog.
class CSettingsDialog final : public CUILibDialog {
    Q_OBJECT

public:
    CSettingsDialog(QWidget *owner, settings::COptionsManager &options, const WindowTexts &texts,
                    ClipboardWatch watch);

    void Notify(const DuiLib::SkinEvent &event) override;

Q_SIGNALS:
    /// The options were written back.
    void optionsChanged();

private:
    void fill();
    void fillNumber(QLatin1StringView list, int value, int first);
    void handleClick(const QString &name);
    void handleCheck(const QString &name);
    void handleChoice(const QString &name);
    void showUpdateMode(int mode);
    void store();

    settings::COptionsManager &m_options;
    settings::CGeneralOptions m_copy;
};

} // namespace tollivar::ui
