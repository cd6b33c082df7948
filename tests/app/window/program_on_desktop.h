#pragma once

#include "app/data_directory.h"
#include "settings/settings_store.h"
#include "tests/support/desktop_session.h"
#include "tests/support/http_site.h"
#include "tests/support/program_run.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <csignal>
#include <memory>

namespace tollivar::app {

// What their titles are found by.
inline const QString kMainWindow = QStringLiteral("^Tollivar$");
inline const QString kDropZone = QStringLiteral("^Tollivar Drop Zone$");
inline const QString kPopup = QStringLiteral("^Download completed$");
inline const QString kAddTask = QStringLiteral("^Add Task$");

/// The built program on a desktop with a window manager.
class ProgramOnDesktop : public ::testing::Test {
protected:
    void SetUp() override
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_sandbox.file(QStringLiteral("data"))));
        qputenv("XDG_STATE_HOME", QFile::encodeName(m_sandbox.file(QStringLiteral("state"))));
        const auto paths = setUpData();
        ASSERT_TRUE(paths);
        m_settings = std::make_unique<settings::SettingsStore>(paths->settings);
        m_settings->setFlag(settings::keys::kNoRemindFlashVersion, true);
        m_settings->setNumber(settings::keys::kCheckUpdate, 3);
    }
    void TearDown() override
    {
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("XDG_STATE_HOME");
    }

    /// Starts the program and waits for its window.
    QString start()
    {
        launch();
        return m_desktop.waitForWindow(kMainWindow);
    }
    /// Starts the program without its window, as a log-in can do.
    void startHidden()
    {
        qputenv("TOLLIVAR_START_HIDDEN", "1");
        launch();
        qunsetenv("TOLLIVAR_START_HIDDEN");
    }
    void end()
    {
        m_program->signal(SIGTERM);
        EXPECT_EQ(m_program->finish(), 0);
    }
    bool isShown(const QString &title) const { return !m_desktop.window(title).isEmpty(); }
    void waitUntilGone(const QString &title) const
    {
        test::waitUntil("a window to go", [&] { return !isShown(title); });
    }
    void waitUntilActive(const QString &window) const
    {
        test::waitUntil("the keyboard", [&] { return m_desktop.active() == window; });
    }
    /// A second start, as by the desktop's menu.
    void startAgain(const QStringList &arguments = {}) const
    {
        test::ProgramRun second(m_sandbox, QStringLiteral("Tollivar"), arguments);
        EXPECT_EQ(second.finish(), 0);
    }
    /// Hands a finished download of a few bytes to the running program.
    void download(const QByteArray &path)
    {
        m_site.on(path, test::answer("12345"));
        test::ProgramRun terminal(m_sandbox, QStringLiteral("tollivar-cli"),
                                  {QStringLiteral("download"), QStringLiteral("--mode"),
                                   QStringLiteral("direct"), QStringLiteral("--folder"),
                                   QStringLiteral("out"), m_site.address(path)});
        EXPECT_EQ(terminal.finish(), 0);
    }

    void launch()
    {
        m_program = std::make_unique<test::ProgramRun>(m_sandbox, QStringLiteral("Tollivar"),
                                                       QStringList{});
    }

    test::Sandbox m_sandbox;
    test::DesktopSession m_desktop{m_sandbox};
    test::HttpSite m_site;
    std::unique_ptr<settings::SettingsStore> m_settings;
    std::unique_ptr<test::ProgramRun> m_program;
};

} // namespace tollivar::app
