#pragma once

#include "platform/message_port.h"
#include "settings/settings_store.h"
#include "ui/drop_zone/drag_dlg.h"
#include "ui/drop_zone/zone_presence.h"

namespace tollivar::settings {
class CGeneralOptions;
}

namespace tollivar::ui {
class CTollivarDlg;
}

namespace tollivar::app {

/// The drop zone of this person: where it stands, when it is seen, and where its addresses go.
///
/// Threads: the main thread.
/// Owns:    the zone; the window is borrowed, and hears of addresses while this lives.
class DropZone {
public:
    /// Stands where it was left, if that is on the screen; its place is kept in `settings`.
    DropZone(ui::CTollivarDlg &window, settings::SettingsStore &settings, ui::CDragDlg::Text text);
    ~DropZone();
    DropZone(const DropZone &) = delete;
    DropZone &operator=(const DropZone &) = delete;

    void applyOptions(const settings::CGeneralOptions &options);
    void applyLanguage();
    void leaveScreen();

private:
    void place();
    void connectZone();
    void showIfWanted();
    void take(const platform::AppMessage &message);

    ui::CTollivarDlg &m_window;
    settings::SettingsStore &m_settings;
    platform::AppMessageInbox m_inbox;
    ui::CDragDlg m_zone;
    ui::ZonePresence m_presence;
};

} // namespace tollivar::app
