#include "app/data_directory.h"
#include "settings/settings_store.h"
#include "tests/support/desktop_session.h"
#include "tests/support/program_run.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <csignal>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;
using test::ProgramRun;

const QString kMainWindow = u"^Tollivar$"_s;
const QString kDropZone = u"^Tollivar Drop Zone$"_s;

/// The built program on a desktop, its drop zone only the minimised form of its window.
class DropZoneProgram : public ::testing::Test {
protected:
    void SetUp() override
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_sandbox.file(u"data"_s)));
        qputenv("XDG_STATE_HOME", QFile::encodeName(m_sandbox.file(u"state"_s)));
        const auto paths = setUpData();
        ASSERT_TRUE(paths);
        settings::SettingsStore settings(paths->settings);
        settings.setFlag(settings::keys::kNoRemindFlashVersion, true);
        settings.setNumber(settings::keys::kCheckUpdate, 3);
        settings.setFlag(settings::keys::kShowDragZone, false);
        settings.setFlag(settings::keys::kMinimizeDragTask, true);
        m_program = std::make_unique<ProgramRun>(m_sandbox, u"Tollivar"_s, QStringList{});
        m_window = m_desktop.waitForWindow(kMainWindow);
        test::waitUntil("the keyboard", [this] { return m_desktop.active() == m_window; });
    }
    void TearDown() override
    {
        m_program->signal(SIGTERM);
        EXPECT_EQ(m_program->finish(), 0);
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("XDG_STATE_HOME");
    }

    test::Sandbox m_sandbox;
    test::DesktopSession m_desktop{m_sandbox};
    std::unique_ptr<ProgramRun> m_program;
    QString m_window;
};

TEST_F(DropZoneProgram, standsForTheMinimizedWindowAndADoubleClickBringsThatBack)
{
    EXPECT_EQ(m_desktop.window(kDropZone), QString());
    m_desktop.act({u"windowminimize"_s, u"--sync"_s, m_window});
    const QString zone = m_desktop.waitForWindow(kDropZone);
    m_desktop.doubleClick(m_desktop.place(zone).center());
    EXPECT_EQ(m_desktop.waitForWindow(kMainWindow), m_window);
    test::waitUntil("the keyboard", [this] { return m_desktop.active() == m_window; });
    test::waitUntil("the zone to go", [this] { return m_desktop.window(kDropZone).isEmpty(); });
}

} // namespace
} // namespace tollivar::app
