#include "app/data_directory.h"
#include "fetch/parser_answer.h"
#include "platform/browser_engine.h"
#include "platform/local_messages.h"
#include "platform/single_instance.h"
#include "tests/support/desktop_session.h"
#include "tests/support/processes.h"
#include "tests/support/program_run.h"
#include "tests/support/sample_site.h"
#include "tests/support/wait_until.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

namespace tollivar::sniff {
namespace {

using namespace Qt::StringLiterals;
using test::ProgramRun;

/// The capture browser on a desktop, used by its windows.
class SniffBrowserProgram : public ::testing::Test {
protected:
    SniffBrowserProgram() { qputenv("TMPDIR", QFile::encodeName(m_temporary.path())); }
    ~SniffBrowserProgram() override { qunsetenv("TMPDIR"); }

    QStringList profiles() const
    {
        return QDir(m_temporary.path()).entryList({u"tollivar-capture-*"_s}, QDir::Dirs);
    }

    ProgramRun browse(const QStringList &arguments) const
    {
        return ProgramRun(m_sandbox, u"SniffBrowser"_s, arguments);
    }
    QStringList onPage(const QString &page) const { return {u"-url"_s, m_site.address(page)}; }

    /// Waits until the page has played something and the panel shows it.
    QString panelWithMedia() const
    {
        return m_desktop.waitForWindow(u"Capture Browser \\([0-9]+"_s);
    }

    /// Nothing of the browser may stay, neither process nor file.
    void expectNothingLeft() const
    {
        const QByteArray place = QFile::encodeName(m_temporary.path());
        test::waitUntil("the browser's end",
                        [&] { return test::processesNaming(place).isEmpty(); });
        EXPECT_EQ(profiles(), QStringList());
    }

    // Short, so that the browser's sockets below it can be named.
    QTemporaryDir m_temporary{u"/tmp/tv-XXXXXX"_s};
    test::Sandbox m_sandbox;
    test::DesktopSession m_desktop{m_sandbox};
    test::SampleSite m_site;
};

TEST_F(SniffBrowserProgram, aChosenMediumIsPrintedAsARecordForWhoReadsIt)
{
    ProgramRun browser =
        browse(QStringList{u"-parsemode"_s, u"PARSE_MODE_IE7"_s} + onPage(u"video.html"_s));
    m_desktop.press(panelWithMedia(), u"alt+d"_s);
    browser.waitForOutput("\r\n\r\n");
    const auto records = fetch::readAnswer(QString::fromUtf8(browser.output()));
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].address, m_site.address(u"media/clip.mp4"_s));
    EXPECT_EQ(records[0].title, u"Harbour at dawn"_s);
    EXPECT_EQ(records[0].extension, u".mp4"_s);
    EXPECT_EQ(records[0].pageUrl, m_site.address(u"video.html"_s));
    EXPECT_TRUE(records[0].agent.contains(u"Chrome/"_s));
}

TEST_F(SniffBrowserProgram, closingThePanelEndsTheBrowser)
{
    ProgramRun browser = browse(onPage(u"video.html"_s));
    m_desktop.close(panelWithMedia());
    EXPECT_EQ(browser.finish(), 0);
    expectNothingLeft();
}

TEST_F(SniffBrowserProgram, closingTheBrowserEndsThePanel)
{
    ProgramRun browser = browse(onPage(u"video.html"_s));
    static_cast<void>(panelWithMedia());
    m_desktop.press(m_desktop.waitForWindow(u"Harbour at dawn"_s), u"ctrl+w"_s);
    EXPECT_EQ(browser.finish(), 0);
    expectNothingLeft();
}

TEST_F(SniffBrowserProgram, killedItTakesTheBrowserAlong)
{
    ProgramRun browser = browse(onPage(u"video.html"_s));
    static_cast<void>(panelWithMedia());
    browser.signal(SIGKILL);
    EXPECT_EQ(browser.finish(), -1);
    expectNothingLeft();
}

TEST_F(SniffBrowserProgram, whatIsForgottenIsGoneAndTheBrowserIsThereAnew)
{
    ProgramRun browser = browse(onPage(u"video.html"_s));
    const QString panel = panelWithMedia();
    const QStringList before = profiles();
    m_desktop.press(panel, u"alt+f"_s);
    test::waitUntil("another profile", [&] {
        const QStringList now = profiles();
        return now.size() == 1 && now != before;
    });
    static_cast<void>(m_desktop.waitForWindow(u"about:blank"_s));
}

TEST_F(SniffBrowserProgram, theRunningProgramIsHandedWhatIsChosen)
{
    // Where the program would listen.
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_sandbox.file(u"data"_s)));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_sandbox.file(u"run"_s)));
    QDir().mkpath(m_sandbox.file(u"run"_s));
    QByteArray taken;
    const auto paths = app::locateData();
    ASSERT_TRUE(paths);
    const auto program = platform::LocalMessageServer::listen(
        platform::instancePlace(paths->directory).socket,
        [&taken](platform::CopyDataId id, const QByteArray &payload) {
            if (id == platform::CopyDataId::CapturedText) {
                taken = payload;
            }
        });
    ASSERT_TRUE(program);
    ProgramRun browser = browse(onPage(u"video.html"_s));
    m_desktop.press(panelWithMedia(), u"alt+d"_s);
    test::waitUntil("the record", [&taken] { return !taken.isEmpty(); });
    const auto records = fetch::readAnswer(QString::fromUtf8(taken));
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].address, m_site.address(u"media/clip.mp4"_s));
    EXPECT_EQ(browser.output(), taken);
}

TEST_F(SniffBrowserProgram, withoutABrowserItSaysSo)
{
    qputenv("TOLLIVAR_BROWSER", "/nowhere");
    ProgramRun browser = browse({});
    qunsetenv("TOLLIVAR_BROWSER");
    const QString panel = m_desktop.waitForWindow(u"Capture Browser"_s);
    m_desktop.close(panel);
    EXPECT_EQ(browser.finish(), 0);
}

TEST_F(SniffBrowserProgram, badUsageIsStatusTwo)
{
    ProgramRun browser = browse({u"-url"_s, u"file:///etc/passwd"_s});
    EXPECT_EQ(browser.finish(), 2);
    EXPECT_TRUE(browser.errors().contains("http"));
}

} // namespace
} // namespace tollivar::sniff
