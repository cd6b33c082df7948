#include "tests/support/http_site.h"
#include "tests/support/program_run.h"
#include "tests/support/sample_site.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

using test::ProgramRun;

class CliTasks : public ::testing::Test {
protected:
    int run(const QStringList &arguments)
    {
        ProgramRun program(m_sandbox, QStringLiteral("tollivar-cli"), arguments);
        const int status = program.finish();
        m_output = program.output();
        m_errors = program.errors();
        return status;
    }

    int download(const QByteArray &path)
    {
        return run({QStringLiteral("download"), QStringLiteral("--mode"), QStringLiteral("direct"),
                    QStringLiteral("--folder"), QStringLiteral("out"), m_site.address(path)});
    }

    QJsonArray list()
    {
        EXPECT_EQ(run({QStringLiteral("list"), QStringLiteral("--json")}), 0);
        const QJsonDocument document = QJsonDocument::fromJson(m_output);
        EXPECT_TRUE(document.isArray()) << m_output.constData();
        return document.array();
    }

    test::Sandbox m_sandbox;
    test::HttpSite m_site;
    QByteArray m_output;
    QByteArray m_errors;
};

TEST_F(CliTasks, theListOfNothingIsEmpty)
{
    EXPECT_EQ(run({QStringLiteral("list")}), 0);
    EXPECT_EQ(m_output, QByteArray());
    EXPECT_TRUE(list().isEmpty());
}

TEST_F(CliTasks, profilesAreListedWithoutADataDirectory)
{
    EXPECT_EQ(run({QStringLiteral("profiles")}), 0);
    EXPECT_TRUE(m_output.startsWith("None - Original File Format (*.*)\nMP3"))
        << m_output.constData();
    EXPECT_EQ(m_output.count('\n'), 15);

    EXPECT_EQ(run({QStringLiteral("profiles"), QStringLiteral("--json")}), 0);
    EXPECT_EQ(QJsonDocument::fromJson(m_output).array().size(), 15);
    EXPECT_EQ(m_errors, QByteArray());
    EXPECT_FALSE(QFile::exists(m_sandbox.file(QStringLiteral("data/Tollivar Data"))));
}

TEST_F(CliTasks, aPortableProgramKeepsItsDataBesideItself)
{
    // The program is copied, so that the mark lies beside no other.
    QDir().mkpath(m_sandbox.file(QStringLiteral("stick")));
    const QString copy = m_sandbox.file(QStringLiteral("stick/tollivar-cli"));
    ASSERT_TRUE(QFile::copy(ProgramRun::pathOf(QStringLiteral("tollivar-cli")), copy));
    m_sandbox.write(QStringLiteral("stick/portable"), "");
    m_site.on("/a.mp4", test::answer("12345"));
    ProgramRun program(m_sandbox, copy,
                       {QStringLiteral("download"), QStringLiteral("--mode"),
                        QStringLiteral("direct"), QStringLiteral("--folder"), QStringLiteral("out"),
                        m_site.address("/a.mp4")});
    EXPECT_EQ(program.finish(), 0) << program.errors().constData();
    EXPECT_TRUE(QFile::exists(m_sandbox.file(QStringLiteral("stick/data/dtasks.db"))));
    EXPECT_TRUE(QFile::exists(m_sandbox.file(QStringLiteral("stick/data/settings.ini"))));
    EXPECT_FALSE(QFile::exists(m_sandbox.file(QStringLiteral("data/Tollivar Data"))));
    EXPECT_FALSE(QFile::exists(m_sandbox.file(QStringLiteral("state/Tollivar Data"))));
}

TEST_F(CliTasks, theListHasColumnsRowsAndStates)
{
    m_site.on("/a.mp4", test::answer("12345"));
    EXPECT_EQ(download("/a.mp4"), 0);
    EXPECT_EQ(download("/missing.mp4"), 1);

    const QJsonArray tasks = list();

    ASSERT_EQ(tasks.size(), 2);
    EXPECT_EQ(tasks[0][u"rowid"].toInt(), 1);
    EXPECT_EQ(tasks[0][u"state"].toString(), QStringLiteral("completed"));
    EXPECT_EQ(tasks[0][u"dwSize"].toInt(), 5);
    EXPECT_EQ(tasks[0][u"dwDownloadSize"].toInt(), 5);
    EXPECT_EQ(tasks[0][u"strOutputName"].toString(), QStringLiteral("a"));
    EXPECT_EQ(tasks[1][u"state"].toString(), QStringLiteral("new"));
}

TEST_F(CliTasks, aSizeThatWasUnknownIsKnownAtTheEnd)
{
    m_site.on("/a.mp4", test::answerWithoutLength("12345"));
    EXPECT_EQ(download("/a.mp4"), 0);
    EXPECT_EQ(list()[0][u"dwSize"].toInt(), 5);
}

TEST_F(CliTasks, runStartsWhatIsNotCompleted)
{
    m_site.on("/a.mp4", test::answer("12345"));
    EXPECT_EQ(download("/a.mp4"), 0);
    EXPECT_EQ(download("/b.mp4"), 1);
    m_site.on("/b.mp4", test::answer("now"));

    EXPECT_EQ(run({QStringLiteral("run")}), 0);

    EXPECT_EQ(m_output, m_sandbox.file(QStringLiteral("out/b.mp4")).toUtf8() + '\n');
    EXPECT_EQ(run({QStringLiteral("run")}), 0);
    EXPECT_EQ(m_output, QByteArray());
}

TEST_F(CliTasks, removeTakesTheRowAndLeavesTheFile)
{
    m_site.on("/a.mp4", test::answer("12345"));
    EXPECT_EQ(download("/a.mp4"), 0);

    EXPECT_EQ(run({QStringLiteral("remove"), QStringLiteral("1")}), 0);

    EXPECT_TRUE(list().isEmpty());
    EXPECT_TRUE(QFile::exists(m_sandbox.file(QStringLiteral("out/a.mp4"))));
}

TEST_F(CliTasks, removeWithTheFileTakesTheTasksOwnOnly)
{
    m_site.on("/a.mp4", test::answer("12345"));
    EXPECT_EQ(download("/a.mp4"), 0);
    m_sandbox.write(QStringLiteral("out/missing.mp4"), "a person's own");
    EXPECT_EQ(download("/missing.mp4"), 1);

    EXPECT_EQ(run({QStringLiteral("remove"), QStringLiteral("1"), QStringLiteral("2"),
                   QStringLiteral("--delete-file")}),
              0);

    EXPECT_TRUE(list().isEmpty());
    EXPECT_FALSE(QFile::exists(m_sandbox.file(QStringLiteral("out/a.mp4"))));
    EXPECT_TRUE(QFile::exists(m_sandbox.file(QStringLiteral("out/missing.mp4"))));
}

TEST_F(CliTasks, anUnknownIdIsStatusOne)
{
    EXPECT_EQ(run({QStringLiteral("remove"), QStringLiteral("7")}), 1);
    EXPECT_TRUE(m_errors.contains("there is no task 7"));
}

TEST_F(CliTasks, aDamagedDatabaseIsSetAsideWithAWarning)
{
    m_sandbox.write(QStringLiteral("data/Tollivar Data/dtasks.db"), "this is no database at all");
    m_site.on("/a.mp4", test::answer("12345"));

    EXPECT_EQ(download("/a.mp4"), 0);

    EXPECT_FALSE(m_errors.isEmpty());
    EXPECT_EQ(list().size(), 1);
    const auto kept = QDir(m_sandbox.file(QStringLiteral("data/Tollivar Data")))
                          .entryList({QStringLiteral("dtasks*")}, QDir::Files);
    EXPECT_GE(kept.size(), 2) << qPrintable(kept.join(u' '));
}

TEST_F(CliTasks, aDataDirectoryThatCannotBeUsedIsStatusFour)
{
    m_sandbox.write(QStringLiteral("data/Tollivar Data"), "a file in its place");
    EXPECT_EQ(download("/a.mp4"), 4);
    EXPECT_TRUE(m_errors.contains("Can not create the application data directory"));
}

TEST_F(CliTasks, probeShowsTheRecordsAndDownloadsNothing)
{
    const test::SampleSite site;
    EXPECT_EQ(run({QStringLiteral("probe"), site.address(QStringLiteral("media/clip.mp4")),
                   QStringLiteral("--json")}),
              0);

    const QJsonArray records = QJsonDocument::fromJson(m_output).array();
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records[0][u"url"].toString(), site.address(QStringLiteral("media/clip.mp4")));
    EXPECT_EQ(records[0][u"protocol"].toString(), QStringLiteral("1"));
    EXPECT_TRUE(list().isEmpty());
}

} // namespace
} // namespace tollivar::app
