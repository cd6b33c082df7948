#pragma once

#include "app/conversions.h"
#include "app/data_directory.h"
#include "app/engine.h"
#include "app/language/languages.h"
#include "app/missing_browser.h"
#include "app/window/capture_browser.h"
#include "app/window/updates.h"
#include "platform/flash_version.h"
#include "platform/interrupt.h"
#include "platform/local_messages.h"
#include "platform/message_port.h"
#include "platform/sound.h"
#include "settings/general_options.h"
#include "settings/options_manager.h"
#include "settings/settings_store.h"
#include "ui/drop_zone/drag_dlg.h"
#include "ui/drop_zone/zone_presence.h"
#include "ui/main_window/tollivar_dlg.h"

#include <QStringList>

#include <memory>

namespace tollivar::app {

/// The parts of the program with a window, joined: what the window asks for reaches who does it,
/// and what happens outside reaches the window.
///
/// Threads: the main thread.
/// Owns:    the window and everything beside it but the engine, which is borrowed.
/// States:  start(), then an event loop, which leaving the program ends, then shutDown().
class Program {
public:
    Program(Engine &engine, settings::SettingsStore settings, DataPaths paths);
    ~Program();
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    /// Shows the window and takes the command line's address.
    void start(const QStringList &arguments);
    /// Takes everything off the screen, then stops every task and waits for it.
    void shutDown();

private:
    void connectWindow();
    void connectCompanions();
    void openSettings();
    void applyOptions();
    /// The capture browser whose choices become tasks without a question; one at a time.
    void openQuickBrowser();
    void showPlayerHelp();
    /// By sound and popup, unless the person does not want to be disturbed.
    void tellCompleted(const tasks::TaskInfo &task);
    void showCompleted(const tasks::TaskInfo &task);
    bool convert(const QString &path);
    void tellMissingBrowser();
    void placeDropZone();
    void connectDropZone();
    /// Tells once what is wrong with the skin.
    void tellSkinProblems();
    void takeAddress(const platform::AppMessage &message);
    [[nodiscard]] const settings::CGeneralOptions &generalOptions() const;
    void listen();
    void takeMessage(platform::CopyDataId id, const QByteArray &payload);
    void addTasks(const QByteArray &requests);
    [[nodiscard]] ui::WindowTexts windowTexts();
    [[nodiscard]] ui::WindowServices windowServices();

    Engine &m_engine;
    settings::SettingsStore m_settings;
    DataPaths m_paths;
    settings::COptionsManager m_options;
    language::Languages m_languages;
    platform::FlashVersion m_flash = platform::flashPlayerVersion();
    platform::Sound m_sound;
    platform::AppMessageInbox m_inbox;
    Conversions m_conversions{[this](std::uint32_t task) { m_window->redrawTask(task); }};
    std::unique_ptr<ui::CTollivarDlg> m_window;
    std::unique_ptr<ui::CDragDlg> m_dropZone;
    ui::ZonePresence m_zonePresence;
    std::unique_ptr<Updates> m_updates;
    std::unique_ptr<CaptureBrowser> m_browser;
    MissingBrowser m_missingBrowser{[this] { tellMissingBrowser(); }};
    std::unique_ptr<platform::InterruptWatch> m_interrupt;
    std::unique_ptr<platform::LocalMessageServer> m_messages;
};

} // namespace tollivar::app
