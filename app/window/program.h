#pragma once

#include "app/data_directory.h"
#include "app/engine.h"
#include "app/language/languages.h"
#include "platform/local_messages.h"
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
/// Owns:    the window and everything beside it but the engine, which is borrowed.
/// States:  start(), then an event loop, which leaving the program ends, then shutDown().
class Program {
public:
    Program(Engine &engine, const settings::SettingsStore &settings, const DataPaths &paths);
    ~Program();
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    /// Shows the window and takes the command line's address.
    void start(const QStringList &arguments);
    /// Takes everything off the screen, then stops every task and waits for it.
    void shutDown();

private:
    void connectWindow();
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
    std::unique_ptr<ui::CTollivarDlg> m_window;
    std::unique_ptr<platform::LocalMessageServer> m_messages;
};

} // namespace tollivar::app
