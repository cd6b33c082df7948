#pragma once

#include "platform/flash_version.h"
#include "settings/settings_store.h"
#include "ui/dialogs/window_texts.h"

#include <QObject>
#include <QPointer>

#include <functional>

namespace tollivar::ui {
class CCantPlayDlg;
}

namespace tollivar::app {

/// What a person is told of the flash player: a note while it is too old, and a window about it.
///
/// Threads: the main thread.
/// Owns:    nothing: the window owns itself, the settings are borrowed.
class PlayerHelp final : public QObject {
    Q_OBJECT

public:
    using ReadVersion = std::function<platform::FlashVersion()>;

    PlayerHelp(const settings::SettingsStore &settings, ui::WindowTexts texts, ReadVersion read);

    /// As of now: another player may have been installed since the last time.
    [[nodiscard]] bool isNoteWanted() const;
    /// Opens the window, or brings the one that is open to the front.
    void show(QWidget &owner);

Q_SIGNALS:
    void upgradeWanted();
    /// Whether the note is wanted has been decided.
    void choiceStored();

private:
    const settings::SettingsStore &m_settings;
    ui::WindowTexts m_texts;
    ReadVersion m_read;
    QPointer<ui::CCantPlayDlg> m_window;
};

} // namespace tollivar::app
