#include "app/data_directory.h"
#include "settings/settings_store.h"
#include "tests/support/desktop_session.h"
#include "tests/support/processes.h"
#include "tests/support/program_run.h"
#include "tests/support/sample_site.h"
#include "tests/support/wait_until.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;
using test::ProgramRun;

const QString kAddTask = u"^Add Task$"_s;

/// The built program with the built capture browser and a real browser, used as a person does.
class CaptureFromProgram : public ::testing::Test {
protected:
    void SetUp() override
    {
        qputenv("TMPDIR", QFile::encodeName(m_temporary.path()));
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_sandbox.file(u"data"_s)));
        qputenv("XDG_STATE_HOME", QFile::encodeName(m_sandbox.file(u"state"_s)));
        const auto paths = setUpData();
        ASSERT_TRUE(paths);
        settings::SettingsStore settings(paths->settings);
        settings.setFlag(settings::keys::kNoRemindFlashVersion, true);
        settings.setNumber(settings::keys::kCheckUpdate, 3);
        m_program = std::make_unique<ProgramRun>(m_sandbox, u"Tollivar"_s, QStringList{});
        m_window = m_desktop.waitForWindow(u"^Tollivar$"_s);
        test::waitUntil("the keyboard", [this] { return m_desktop.active() == m_window; });
    }
    void TearDown() override
    {
        for (const char *name : {"TMPDIR", "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
            qunsetenv(name);
        }
    }

    void clickBrowserButton() const
    {
        // In the middle of the second of the large buttons.
        m_desktop.click(m_desktop.place(m_window).topLeft() + QPoint(139, 88));
    }
    /// Accepts the add-task dialog by the button in its lower right corner.
    void acceptTask() const
    {
        const QString dialog = m_desktop.waitForWindow(kAddTask);
        test::waitUntil("the dialog's keyboard", [&] { return m_desktop.active() == dialog; });
        m_desktop.click(m_desktop.place(dialog).bottomRight() - QPoint(83, 33));
    }
    /// Opens the page in the capture browser's empty window, by the keyboard.
    void browseTo(const QString &page) const
    {
        m_desktop.press(m_desktop.waitForWindow(u"about:blank"_s), u"ctrl+l"_s);
        m_desktop.act({u"type"_s, m_site.address(page)});
        m_desktop.act({u"key"_s, u"Return"_s});
    }
    /// Chooses what the page plays in the panel, which it returns.
    QString chooseMedium() const
    {
        QString panel = m_desktop.waitForWindow(u"Capture Browser \\([0-9]+"_s);
        m_desktop.press(panel, u"alt+d"_s);
        return panel;
    }

    /// The one task, once it is completed.
    QJsonObject completedTask() const
    {
        QJsonObject task;
        test::waitUntil("a completed task", [&] {
            ProgramRun list(m_sandbox, u"tollivar-cli"_s, {u"list"_s, u"--json"_s});
            list.finish();
            const QJsonArray tasks = QJsonDocument::fromJson(list.output()).array();
            task = tasks.size() == 1 ? tasks.first().toObject() : QJsonObject();
            return task[u"state"].toString() == u"completed"_s;
        });
        return task;
    }
    void expectHarbourClip(const QJsonObject &task) const
    {
        EXPECT_EQ(task[u"strOriURL"].toString(), m_site.address(u"video.html"_s));
        EXPECT_EQ(task[u"strDownloadUrl"].toString(), m_site.address(u"media/clip.mp4"_s));
        const QString path = task[u"strOutputFolder"].toString() +
                             task[u"strOutputName"].toString() + task[u"strFileType"].toString();
        EXPECT_TRUE(path.endsWith(u"/Harbour at dawn/Harbour at dawn.mp4"_s)) << path.toStdString();
        EXPECT_GT(QFileInfo(path).size(), 0);
    }
    void expectBrowserGone() const
    {
        const QByteArray place = QFile::encodeName(m_temporary.path());
        test::waitUntil("the browser's end", [&] {
            // The program itself may go on.
            QStringList left = test::processesNaming(place);
            left.removeOne(ProgramRun::pathOf(u"Tollivar"_s) + u' ');
            return left.isEmpty();
        });
        EXPECT_EQ(QDir(m_temporary.path()).entryList({u"tollivar-capture-*"_s}, QDir::Dirs),
                  QStringList());
    }

    // Short, so that the browser's sockets below it can be named.
    QTemporaryDir m_temporary{u"/tmp/tv-XXXXXX"_s};
    test::Sandbox m_sandbox;
    test::DesktopSession m_desktop{m_sandbox};
    test::SampleSite m_site;
    std::unique_ptr<ProgramRun> m_program;
    QString m_window;
};

TEST_F(CaptureFromProgram, theButtonsBrowserOffersWhatIsChosenAsATask)
{
    clickBrowserButton();
    browseTo(u"video.html"_s);
    const QString panel = chooseMedium();
    acceptTask();
    expectHarbourClip(completedTask());
    m_desktop.close(panel);
    expectBrowserGone();
    m_program->signal(SIGTERM);
    EXPECT_EQ(m_program->finish(), 0);
}

TEST_F(CaptureFromProgram, theKeysBrowserMakesATaskWithoutAQuestionAndEndsWithTheProgram)
{
    m_desktop.press(m_window, u"ctrl+b"_s);
    browseTo(u"video.html"_s);
    static_cast<void>(chooseMedium());
    expectHarbourClip(completedTask());
    EXPECT_EQ(m_desktop.window(kAddTask), QString());
    m_program->signal(SIGTERM);
    EXPECT_EQ(m_program->finish(), 0);
    expectBrowserGone();
}

TEST_F(CaptureFromProgram, theKeysBrowserEndsWithAKilledProgram)
{
    m_desktop.press(m_window, u"ctrl+b"_s);
    static_cast<void>(m_desktop.waitForWindow(u"about:blank"_s));
    m_program->signal(SIGKILL);
    EXPECT_EQ(m_program->finish(), -1);
    expectBrowserGone();
}

TEST_F(CaptureFromProgram, aClosedBrowserOpensAgainByTheKeys)
{
    m_desktop.press(m_window, u"ctrl+b"_s);
    m_desktop.press(m_desktop.waitForWindow(u"about:blank"_s), u"ctrl+w"_s);
    expectBrowserGone();
    // The program hears of the end at its next look.
    test::waitUntil("another browser", [this] {
        m_desktop.press(m_window, u"ctrl+b"_s);
        return !m_desktop.window(u"about:blank"_s).isEmpty();
    });
    m_program->signal(SIGTERM);
    EXPECT_EQ(m_program->finish(), 0);
    expectBrowserGone();
}

} // namespace
} // namespace tollivar::app
