#include "app/task_request.h"
#include "platform/local_messages.h"
#include "platform/single_instance.h"
#include "tests/support/http_site.h"
#include "tests/support/program_run.h"
#include "tests/support/rtmp_server.h"
#include "tests/support/sample_site.h"
#include "tests/support/wait_until.h"

#include <QFile>

#include <gtest/gtest.h>

#include <csignal>

namespace tollivar::app {
namespace {

using test::ProgramRun;

class CliDownload : public ::testing::Test {
protected:
    ProgramRun run(const QStringList &arguments) const
    {
        return ProgramRun(m_sandbox, QStringLiteral("tollivar-cli"), arguments);
    }

    ProgramRun direct(const QByteArray &path, const QStringList &more = {}) const
    {
        return run(QStringList{QStringLiteral("download"), QStringLiteral("--mode"),
                               QStringLiteral("direct"), QStringLiteral("--folder"),
                               QStringLiteral("out"), m_site.address(path)} +
                   more);
    }

    static QStringList names(const QList<QJsonObject> &events)
    {
        QStringList names;
        for (const QJsonObject &event : events) {
            names.append(event[u"event"].toString());
        }
        return names;
    }

    test::Sandbox m_sandbox;
    test::HttpSite m_site;
};

TEST_F(CliDownload, printsThePathOfTheFinishedFile)
{
    m_site.on("/a/clip.mp4", test::answer("the media"));
    ProgramRun program = direct("/a/clip.mp4");

    EXPECT_EQ(program.finish(), 0);

    EXPECT_EQ(program.output(), m_sandbox.file(QStringLiteral("out/clip.mp4")).toUtf8() + '\n');
    EXPECT_EQ(m_sandbox.read(QStringLiteral("out/clip.mp4")), QByteArray("the media"));
}

TEST_F(CliDownload, aStreamsAddressIsFetchedDirectly)
{
    test::RtmpServer server;
    server.record(QStringLiteral("show.flv"),
                  {QStringLiteral("-c:v"), QStringLiteral("flv"), QStringLiteral("-c:a"),
                   QStringLiteral("libmp3lame")},
                  2);
    ProgramRun program =
        run({QStringLiteral("download"), server.address(QStringLiteral("vod/show.flv")),
             QStringLiteral("--folder"), QStringLiteral("out")});

    EXPECT_EQ(program.finish(), 0) << program.errors().constData();

    EXPECT_EQ(program.output(), m_sandbox.file(QStringLiteral("out/show.flv")).toUtf8() + '\n');
    EXPECT_TRUE(m_sandbox.read(QStringLiteral("out/show.flv")).startsWith("FLV"));
}

TEST_F(CliDownload, withoutABrowserAPageThatGivesNothingSaysWhatToInstall)
{
    m_site.on("/page", test::answer("<p>Films come by script.", "text/html"));
    qputenv("TOLLIVAR_BROWSER", "/nonexistent");
    ProgramRun program = run({QStringLiteral("download"), m_site.address("/page")});
    qunsetenv("TOLLIVAR_BROWSER");

    EXPECT_EQ(program.finish(), 1);

    EXPECT_TRUE(program.errors().contains("Parsing Failed - no browser"));
    EXPECT_TRUE(program.errors().contains("install chromium"));
}

TEST_F(CliDownload, aPageOfTheSampleSiteBecomesAFileUnderItsTitle)
{
    const test::SampleSite site;
    ProgramRun program =
        run({QStringLiteral("download"), site.address(QStringLiteral("video.html")),
             QStringLiteral("--folder"), QStringLiteral("out"), QStringLiteral("--json")});

    EXPECT_EQ(program.finish(), 0) << program.errors().constData();

    const QStringList seen = names(program.events());
    EXPECT_EQ(seen.mid(0, 4),
              QStringList({QStringLiteral("added"), QStringLiteral("resolving"),
                           QStringLiteral("title"), QStringLiteral("downloading")}));
    EXPECT_EQ(seen.back(), QStringLiteral("completed"));
    EXPECT_EQ(program.events().back()[u"name"].toString(), QStringLiteral("Harbour at dawn"));
    EXPECT_TRUE(QFile::exists(m_sandbox.file(QStringLiteral("out/Harbour at dawn.mp4"))));
}

TEST_F(CliDownload, aFailureIsOneSentenceAndStatusOne)
{
    ProgramRun program = direct("/missing.mp4");

    EXPECT_EQ(program.finish(), 1);

    EXPECT_EQ(program.output(), QByteArray());
    EXPECT_EQ(program.errors(), "tollivar-cli: " + m_site.address("/missing.mp4").toUtf8() +
                                    ": Downloading Failed - File Not Found (HTTP 404 Error)\n");
}

TEST_F(CliDownload, aFailedTaskIsTriedAgainAndTheScriptHearsOfIt)
{
    std::atomic<int> count = 0;
    m_site.on("/late.mp4", [&count](test::HttpPeer &peer) {
        if (count++ == 0) {
            test::answerStatus("500 Not Yet")(peer);
        } else {
            test::answer("now")(peer);
        }
    });
    ProgramRun program = direct("/late.mp4", {QStringLiteral("--json")});

    EXPECT_EQ(program.finish(), 0);

    EXPECT_TRUE(names(program.events()).contains(QStringLiteral("retry")));
    EXPECT_EQ(program.events().back()[u"event"].toString(), QStringLiteral("completed"));
}

TEST_F(CliDownload, aRefusedAddressMakesNoTask)
{
    ProgramRun program = run({QStringLiteral("download"), QStringLiteral("ftp://a/b")});
    EXPECT_EQ(program.finish(), 2);
    EXPECT_TRUE(program.errors().contains("are not fetched"));

    ProgramRun list = run({QStringLiteral("list")});
    EXPECT_EQ(list.finish(), 0);
    EXPECT_EQ(list.output(), QByteArray());
}

TEST_F(CliDownload, badUsageIsStatusTwo)
{
    ProgramRun program = run({QStringLiteral("fly")});
    EXPECT_EQ(program.finish(), 2);
    EXPECT_EQ(program.errors(),
              QByteArray("tollivar-cli: unknown command \"fly\"; see tollivar-cli --help\n"));
}

TEST_F(CliDownload, anInterruptStopsCleanlyAndKeepsWhatCame)
{
    m_site.on("/slow.mp4", test::answerStalled(QByteArray(10'000, 'v'), 1'000'000));
    ProgramRun program = direct("/slow.mp4", {QStringLiteral("--json")});
    m_site.waitForRequests(1);
    program.waitForOutput("downloading");
    test::waitUntil("the file", [this] {
        return QFile::exists(m_sandbox.file(QStringLiteral("out/slow.mp4")));
    });
    program.signal(SIGINT);

    EXPECT_EQ(program.finish(), 3);
    EXPECT_EQ(program.events().back()[u"event"].toString(), QStringLiteral("stopped"));

    ProgramRun list = run({QStringLiteral("list"), QStringLiteral("--json")});
    EXPECT_EQ(list.finish(), 0);
    EXPECT_TRUE(list.output().contains("\"state\":\"stopped\"")) << list.output().constData();
}

TEST_F(CliDownload, aSecondFrontEndIsToldAndWritesNothing)
{
    m_site.on("/slow.mp4", test::neverAnswer());
    ProgramRun first = direct("/slow.mp4");
    m_site.waitForRequests(1);

    ProgramRun second = direct("/slow.mp4");
    EXPECT_EQ(second.finish(), 4);
    EXPECT_TRUE(second.errors().contains("works with the tasks"));

    ProgramRun list = run({QStringLiteral("list"), QStringLiteral("--json")});
    EXPECT_EQ(list.finish(), 0);
    EXPECT_EQ(list.output().count("\"rowid\""), 1);
}

TEST_F(CliDownload, aRunningProgramTakesTheAddressesOver)
{
    qputenv("XDG_RUNTIME_DIR", m_sandbox.file(QStringLiteral("run")).toUtf8());
    ASSERT_TRUE(QDir().mkpath(m_sandbox.file(QStringLiteral("run"))));
    const auto place =
        platform::instancePlace(m_sandbox.file(QStringLiteral("data/Tollivar Data")));
    std::vector<TaskRequest> received;
    const auto server = platform::LocalMessageServer::listen(
        place.socket, [&received](platform::CopyDataId id, const QByteArray &payload) {
            EXPECT_EQ(id, platform::CopyDataId::AddTasks);
            received = decodeTaskRequests(payload).value_or(std::vector<TaskRequest>{});
        });
    ASSERT_TRUE(server);
    ProgramRun program = direct("/x.mp4");
    test::waitUntil("the tasks", [&received] { return !received.empty(); });

    EXPECT_EQ(program.finish(), 0);
    EXPECT_TRUE(program.errors().contains("Handed over"));
    EXPECT_EQ(received.front().address, m_site.address("/x.mp4"));
    EXPECT_EQ(received.front().folder, m_sandbox.file(QStringLiteral("out")));
    EXPECT_EQ(received.front().method, tasks::DownloadMethod::Direct);
}

TEST_F(CliDownload, versionAndHelpAreAnswered)
{
    ProgramRun version = run({QStringLiteral("--version")});
    EXPECT_EQ(version.finish(), 0);
    EXPECT_EQ(version.output(), QByteArray("tollivar-cli 1.0.0.0\n"));
    ProgramRun help = run({QStringLiteral("--help")});
    EXPECT_EQ(help.finish(), 0);
    EXPECT_TRUE(help.output().startsWith("usage: tollivar-cli"));
}

} // namespace
} // namespace tollivar::app
