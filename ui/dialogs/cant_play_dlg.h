#pragma once

#include "platform/flash_version.h"
#include "settings/settings_store.h"
#include "ui/dialog/ui_lib_dialog.h"
#include "ui/dialogs/window_texts.h"

namespace tollivar::ui {

/// Whether pages that play by flash can be captured with it.
[[nodiscard]] bool isNewEnough(const platform::FlashVersion &version);

/// Tells which flash player was found, and asks for an upgrade when it is too old.
///
/// Threads: the main thread.
/// Owns:    itself: closing it destroys it. Settings and texts are borrowed.
class CCantPlayDlg final : public CUILibDialog {
    Q_OBJECT

public:
    CCantPlayDlg(QWidget *owner, const settings::SettingsStore &settings, const WindowTexts &texts,
                 const platform::FlashVersion &version);

    void Notify(const DuiLib::SkinEvent &event) override;

Q_SIGNALS:
    void upgradeWanted();
    /// Whether the note is wanted has been decided.
    void choiceStored();

private:
    void reject() override;
    void done(int result) override;

    const settings::SettingsStore &m_settings;
};

} // namespace tollivar::ui
