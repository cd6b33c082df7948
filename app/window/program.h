#pragma once

#include "app/conversions.h"
#include "app/data_directory.h"
#include "app/engine.h"
#include "app/language/languages.h"
#include "app/missing_browser.h"
#include "app/window/capture_browser.h"
#include "app/window/completion_notes.h"
#include "app/window/drop_zone.h"
#include "app/window/free_moment.h"
#include "app/window/handed_over.h"
#include "app/window/player_help.h"
#include "app/window/updates.h"
#include "platform/interrupt.h"
#include "settings/options_manager.h"
#include "settings/settings_store.h"
#include "ui/main_window/tollivar_dlg.h"

#include <QStringList>

#include <memory>

namespace tollivar::app {

/// The parts of the program with a window, joined: what the window asks for reaches who does it,
/// and what happens outside reaches the window.
///
/// Threads: the main thread.
/// Owns:    the window and everything beside it but engine and languages, which are borrowed.
/// States:  start(), then an event loop, which leaving the program ends, then shutDown().
class Program {
public:
    Program(Engine &engine, settings::SettingsStore settings, language::Languages &languages,
            DataPaths paths);
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
    bool convert(const QString &path);
    void tellMissingBrowser();
    /// Tells once what is wrong with the skin.
    void tellSkinProblems();
    [[nodiscard]] ui::WindowTexts windowTexts();
    [[nodiscard]] ui::WindowServices windowServices();

    Engine &m_engine;
    settings::SettingsStore m_settings;
    DataPaths m_paths;
    settings::COptionsManager m_options;
    language::Languages &m_languages;
    PlayerHelp m_playerHelp{m_settings, windowTexts(),
                            [] { return platform::flashPlayerVersion(); }};
    Conversions m_conversions{[this](std::uint32_t task) { m_window->redrawTask(task); }};
    std::unique_ptr<ui::CTollivarDlg> m_window;
    CompletionNotes m_notes;
    std::unique_ptr<DropZone> m_dropZone;
    std::unique_ptr<Updates> m_updates;
    std::unique_ptr<CaptureBrowser> m_browser;
    FreeMoment m_freeMoment;
    MissingBrowser m_missingBrowser{[this] { m_freeMoment.run([this] { tellMissingBrowser(); }); }};
    std::unique_ptr<platform::InterruptWatch> m_interrupt;
    std::unique_ptr<HandedOver> m_handedOver;
};

} // namespace tollivar::app
