#include "app/data_directory.h"
#include "platform/local_messages.h"
#include "platform/single_instance.h"
#include "settings/settings_store.h"
#include "tests/support/program_run.h"
#include "tests/support/raw_server.h"
#include "tests/support/sample_site.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;
using test::ProgramRun;

/// The built program, off the screen.
class WindowProgram : public ::testing::Test {
protected:
    void SetUp() override { qputenv("QT_QPA_PLATFORM", "offscreen"); }
    void TearDown() override { qunsetenv("QT_QPA_PLATFORM"); }

    /// Starts the program and waits until it can be reached: a start before that would end unheard,
    /// or be the first one itself.
    std::unique_ptr<ProgramRun> start(const QStringList &arguments = {}) const
    {
        auto program = std::make_unique<ProgramRun>(m_sandbox, u"Tollivar"_s, arguments);
        QElapsedTimer waited;
        waited.start();
        while (!canBeReached()) {
            if (waited.hasExpired(60'000)) {
                ADD_FAILURE() << "the program never listens: " << program->errors().constData();
                break;
            }
        }
        return program;
    }

    [[nodiscard]] bool canBeReached() const
    {
        // In the log-in's folder, or in the data directory when that is not private.
        const QString place = platform::instancePlace({}).socket.section(u'/', -2);
        for (const QString &folder : {u"run/"_s, u"data/Tollivar Data/"_s}) {
            if (platform::sendLocalMessage(m_sandbox.file(folder + place),
                                           platform::CopyDataId::BringToFront, {},
                                           std::chrono::seconds(10))) {
                return true;
            }
        }
        return false;
    }

    /// What is stored now.
    [[nodiscard]] QJsonArray stored() const
    {
        ProgramRun list(m_sandbox, u"tollivar-cli"_s, {u"list"_s, u"--json"_s});
        list.finish();
        return QJsonDocument::fromJson(list.output()).array();
    }

    /// A second start with that address.
    void handOver(const QString &address) const
    {
        ProgramRun second(m_sandbox, u"Tollivar"_s, {u"-url"_s, address});
        EXPECT_EQ(second.finish(), 0);
        QElapsedTimer waited;
        waited.start();
        const auto isStored = [this, &address] {
            const QJsonArray tasks = stored();
            return std::any_of(tasks.begin(), tasks.end(), [&address](const QJsonValue &task) {
                return task[u"strOriURL"].toString() == address;
            });
        };
        while (!isStored()) {
            ASSERT_FALSE(waited.hasExpired(60'000)) << "the first instance never took it";
        }
    }

    void waitForState(const QString &state) const
    {
        QElapsedTimer waited;
        waited.start();
        while (stored().first()[u"state"].toString() != state) {
            ASSERT_FALSE(waited.hasExpired(60'000)) << "never " << state.toStdString();
        }
    }

    test::Sandbox m_sandbox;
};

TEST_F(WindowProgram, anAddressOnItsCommandLineBecomesAFile)
{
    const test::SampleSite site;
    const auto program = start({u"-url"_s, site.address(u"video.html"_s)});
    QElapsedTimer waited;
    waited.start();
    while (stored().isEmpty()) {
        ASSERT_FALSE(waited.hasExpired(60'000));
    }
    waitForState(u"completed"_s);
    const QJsonValue task = stored().first();
    const QString file = task[u"strOutputFolder"].toString() + task[u"strOutputName"].toString() +
                         task[u"strFileType"].toString();
    EXPECT_TRUE(file.endsWith(u"My Flash Videos/Harbour at dawn.mp4"_s)) << file.toStdString();
    EXPECT_TRUE(QFile::exists(file));
    program->signal(SIGTERM);
    EXPECT_EQ(program->finish(), 0);
}

TEST_F(WindowProgram, aSecondStartHandsItsAddressOverAndEnds)
{
    const auto program = start();
    handOver(u"http://127.0.0.1:9/nothing"_s);
    program->signal(SIGTERM);
    EXPECT_EQ(program->finish(), 0);
}

TEST_F(WindowProgram, aKilledInstanceDoesNotBlockTheNextStart)
{
    {
        const auto program = start();
        handOver(u"http://127.0.0.1:9/first"_s);
        program->signal(SIGKILL);
        EXPECT_EQ(program->finish(), -1);
    }
    const auto program = start();
    handOver(u"http://127.0.0.1:9/second"_s);
    EXPECT_EQ(stored().size(), 2);
    program->signal(SIGTERM);
    EXPECT_EQ(program->finish(), 0);
}

TEST_F(WindowProgram, aTerminalFrontEndHandsItsTasksOver)
{
    const auto program = start();
    handOver(u"http://127.0.0.1:9/first"_s);
    ProgramRun other(m_sandbox, u"tollivar-cli"_s,
                     {u"download"_s, u"http://127.0.0.1:9/second"_s, u"--folder"_s, u"out"_s});
    EXPECT_EQ(other.finish(), 0);
    EXPECT_EQ(stored().size(), 2);
    program->signal(SIGTERM);
    EXPECT_EQ(program->finish(), 0);
}

/// Downloads that a server holds up, and how quickly the program still ends.
class WindowProgramExit : public WindowProgram {
protected:
    void SetUp() override
    {
        WindowProgram::SetUp();
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_sandbox.file(u"data"_s)));
        qputenv("XDG_STATE_HOME", QFile::encodeName(m_sandbox.file(u"state"_s)));
    }
    void TearDown() override
    {
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("XDG_STATE_HOME");
        WindowProgram::TearDown();
    }

    void endsWhileTasksRun(const QString &scheme, int count)
    {
        const auto paths = setUpData();
        ASSERT_TRUE(paths);
        settings::SettingsStore(paths->settings).setNumber(settings::keys::kMaxSimDownloads, count);
        const test::RawServer silent([](const auto &peer) { peer.stall(); });
        QStringList arguments{u"download"_s, u"--mode"_s, u"direct"_s, u"--folder"_s, u"out"_s};
        for (int i = 0; i < count; ++i) {
            arguments += u"%1://127.0.0.1:%2/a/%3.flv"_s.arg(scheme).arg(silent.port()).arg(i);
        }
        const auto program = start();
        ProgramRun terminal(m_sandbox, u"tollivar-cli"_s, arguments);
        ASSERT_EQ(terminal.finish(), 0) << terminal.errors().constData();
        test::waitUntil("every task's connection", [&] { return silent.connections() >= count; });
        QElapsedTimer ending;
        ending.start();
        program->signal(SIGTERM);
        EXPECT_EQ(program->finish(), 0);
        RecordProperty("milliseconds", static_cast<int>(ending.elapsed()));
        // Far above what it takes, far below what a task that is waited for would.
        EXPECT_LT(ending.elapsed(), 6'000);
        EXPECT_EQ(stored().size(), count);
    }
};

TEST_F(WindowProgramExit, endsAtOnceWhileFiftyServersStall)
{
    endsWhileTasksRun(u"http"_s, 50);
}

TEST_F(WindowProgramExit, endsAtOnceWhileTwentyStreamsStall)
{
    endsWhileTasksRun(u"rtmp"_s, 20);
}

} // namespace
} // namespace tollivar::app
