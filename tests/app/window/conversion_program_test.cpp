#include "app/data_directory.h"
#include "settings/settings_store.h"
#include "tests/support/desktop_session.h"
#include "tests/support/http_site.h"
#include "tests/support/processes.h"
#include "tests/support/program_run.h"
#include "tests/support/rtmp_server.h"
#include "tests/support/wait_until.h"

#include <QFileInfo>

#include <gtest/gtest.h>

#include <csignal>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;
using test::ProgramRun;

/// The built program on a desktop, with a finished download that takes long to convert.
class ConversionInProgram : public ::testing::Test {
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
    }
    void TearDown() override
    {
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("XDG_STATE_HOME");
    }

    void start()
    {
        m_program = std::make_unique<ProgramRun>(m_sandbox, u"Tollivar"_s, QStringList{});
        m_window = m_desktop.waitForWindow(u"^Tollivar$"_s);
        test::waitUntil("the keyboard", [this] { return m_desktop.active() == m_window; });
    }
    /// Hands the download with its profile to the running program; returns once that converts.
    void convertInProgram()
    {
        const QString film = m_sandbox.file(u"film.avi"_s);
        test::runToEnd({u"ffmpeg"_s, u"-nostdin"_s, u"-v"_s, u"error"_s, u"-f"_s, u"lavfi"_s,
                        u"-i"_s, u"testsrc=size=320x240:rate=50:duration=300"_s, u"-c:v"_s,
                        u"mpeg4"_s, film});
        m_site.on("/film.avi", test::answer(m_sandbox.read(u"film.avi"_s)));
        start();
        ProgramRun terminal(m_sandbox, u"tollivar-cli"_s,
                            {u"download"_s, u"--mode"_s, u"direct"_s, u"--folder"_s, u"out"_s,
                             u"--profile"_s, u"WMV"_s, m_site.address("/film.avi")});
        EXPECT_EQ(terminal.finish(), 0) << terminal.errors().constData();
        test::waitUntil("the half file", [this] { return QFileInfo::exists(m_half); });
    }

    /// The download stays, and nothing of its conversion.
    void expectOnlyTheDownload() const
    {
        test::waitUntil("the half file's end", [this] { return !QFileInfo::exists(m_half); });
        test::waitUntil("the converter's end",
                        [this] { return test::processesNaming(m_half.toUtf8()).isEmpty(); });
        EXPECT_FALSE(QFileInfo::exists(m_sandbox.file(u"out/film.wmv"_s)));
        EXPECT_EQ(m_sandbox.read(u"out/film.avi"_s), m_sandbox.read(u"film.avi"_s));
    }
    void end()
    {
        m_program->signal(SIGTERM);
        EXPECT_EQ(m_program->finish(), 0);
    }

    test::Sandbox m_sandbox;
    test::DesktopSession m_desktop{m_sandbox};
    test::HttpSite m_site;
    std::unique_ptr<ProgramRun> m_program;
    QString m_window;
    const QString m_half = m_sandbox.file(u"out/.converting-film.wmv"_s);
};

TEST_F(ConversionInProgram, stopEndsTheConversionOfTheSelectedRowAndNothingElse)
{
    convertInProgram();
    // Onto the list's first row, past the popup that tells of the download.
    const QPoint row = m_desktop.place(m_window).topLeft() + QPoint(100, 215);
    m_desktop.act(
        {u"mousemove"_s, QString::number(row.x()), QString::number(row.y()), u"click"_s, u"1"_s});
    m_desktop.press(m_window, u"F6"_s);
    expectOnlyTheDownload();
    end();
}

TEST_F(ConversionInProgram, theProgramsEndLeavesNeitherConverterNorHalfFile)
{
    convertInProgram();
    end();
    expectOnlyTheDownload();
}

TEST_F(ConversionInProgram, aKilledProgramLeavesNeitherAndStartsAgainWithTheDownload)
{
    convertInProgram();
    m_program->signal(SIGKILL);
    EXPECT_EQ(m_program->finish(), -1);
    expectOnlyTheDownload();
    start();
    expectOnlyTheDownload();
    end();
}

} // namespace
} // namespace tollivar::app
