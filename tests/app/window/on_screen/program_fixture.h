#pragma once

#include "app/data_directory.h"
#include "app/engine.h"
#include "app/language/languages.h"
#include "app/window/program.h"
#include "settings/settings_store.h"
#include "tests/support/http_site.h"
#include "tests/support/noting_program.h"
#include "tests/support/sandbox.h"
#include "ui/drop_zone/drag_dlg.h"
#include "ui/main_window/tollivar_dlg.h"

#include <QString>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>

namespace tollivar::app {

/// The program whole, in the test's process and off the screen: its own data, a server that the
/// test scripts, and a desktop that only notes what it is to open.
class ProgramTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Starts it with the settings as they are.
    void start();
    void end();

    /// The settings dialog: `edit` changes what it shows, then OK is pressed.
    void changeSettings(const std::function<void(QWidget &dialog)> &edit);
    /// Hands a direct address of the site over as a task, and returns its id.
    std::uint32_t add(const QByteArray &path, const QString &name = {});
    /// The same with a task that completes, until its popup stands; returns the path of its file.
    QString complete(const QByteArray &path, const QString &name = {});

    [[nodiscard]] static ui::CTollivarDlg &window();
    [[nodiscard]] static ui::CDragDlg &dropZone();
    [[nodiscard]] tasks::TaskManager &manager() { return m_engine->manager(); }

    test::Sandbox m_sandbox;
    test::DesktopOpener m_opener{m_sandbox};
    test::HttpSite m_site;
    std::optional<settings::SettingsStore> m_settings;

private:
    DataPaths m_paths;
    QString m_current;
    std::optional<language::Languages> m_languages;
    std::unique_ptr<Engine> m_engine;
    std::unique_ptr<Program> m_program;
};

} // namespace tollivar::app
