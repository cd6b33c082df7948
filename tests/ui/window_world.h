#pragma once

#include "app/language/languages.h"
#include "settings/options_manager.h"
#include "settings/settings_store.h"
#include "tasks/task_database.h"
#include "tasks/task_manager.h"
#include "tasks/task_recorder.h"
#include "tests/support/manual_clock.h"
#include "tests/support/sandbox.h"
#include "tests/support/scripted_worker.h"
#include "ui/main_window/tollivar_dlg.h"

#include <QString>

#include <memory>
#include <vector>

namespace tollivar::test {

/// The main window over a real database, with scripted workers, its own settings and the skin and
/// languages of the source tree.
class WindowWorld {
public:
    WindowWorld();
    ~WindowWorld();
    WindowWorld(const WindowWorld &) = delete;
    WindowWorld &operator=(const WindowWorld &) = delete;

    /// Makes the window; tasks and settings that are there before are in it from the start.
    ui::CTollivarDlg &open();
    [[nodiscard]] ui::CTollivarDlg &window() { return *m_window; }
    [[nodiscard]] tasks::TaskManager &manager() { return *m_manager; }
    [[nodiscard]] settings::SettingsStore &settings() { return m_settings; }
    [[nodiscard]] language::Languages &languages() { return m_languages; }
    [[nodiscard]] const Sandbox &sandbox() const { return m_sandbox; }
    [[nodiscard]] ui::WindowTexts texts();

    /// A stored task in the sandbox's folder.
    std::uint32_t add(tasks::TaskInfo task);
    std::uint32_t add(const QString &name);
    std::uint32_t addCompleted(const QString &name);
    [[nodiscard]] ScriptedWorker &worker(std::uint32_t id) const;
    /// Ends a run and waits until the window has heard of it.
    void end(std::uint32_t id, tasks::TaskEventCode code);

    /// What the capture browser's texts stand for, as the next ones will be read.
    std::vector<ui::CapturedMedia> captured;
    /// Whether the caption says that Flash is too old.
    bool wantsFlashNote = false;
    /// The tasks whose conversions the window wanted stopped.
    std::vector<std::uint32_t> stoppedConversions;

private:
    Sandbox m_sandbox;
    settings::SettingsStore m_settings;
    settings::COptionsManager m_options;
    language::Languages m_languages;
    ManualClock m_clock;
    std::unique_ptr<tasks::TaskDatabase> m_database;
    std::unique_ptr<platform::AppMessageInbox> m_inbox;
    std::unique_ptr<tasks::TaskManager> m_manager;
    std::unique_ptr<tasks::TaskRecorder> m_recorder;
    std::unique_ptr<ui::CTollivarDlg> m_window;
    int m_events = 0;
};

/// Chooses the skin of the source tree for the windows made from now on.
void useDefaultSkin();

} // namespace tollivar::test
