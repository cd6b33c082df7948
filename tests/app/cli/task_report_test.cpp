#include "app/cli/task_report.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

QJsonObject parsed(const QByteArray &json)
{
    EXPECT_FALSE(json.contains('\n'));
    return QJsonDocument::fromJson(json).object();
}

tasks::TaskInfo clip()
{
    tasks::TaskInfo task;
    task.strOriURL = QStringLiteral("http://site/page");
    task.strOutputFolder = QStringLiteral("/videos/");
    task.strOutputName = QStringLiteral("A \"clip\"");
    task.strFileType = QStringLiteral(".mp4");
    return task;
}

TEST(TaskReport, aNewTaskHasNoPathAndNoSize)
{
    const QJsonObject report = parsed(reportJson({.row = 7, .task = clip()}));

    EXPECT_EQ(report[u"event"].toString(), QStringLiteral("added"));
    EXPECT_EQ(report[u"rowid"].toInteger(), 7);
    EXPECT_TRUE(report[u"size"].isNull());
    EXPECT_FALSE(report.contains(u"path"));
    EXPECT_FALSE(report.contains(u"percent"));
    EXPECT_FALSE(report.contains(u"reason"));
}

TEST(TaskReport, aConversionTellsItsPercentAndThenItsFile)
{
    tasks::TaskInfo task = clip();
    task.bFileCreated = 1;
    const QJsonObject running = parsed(reportJson(
        {.kind = ReportKind::Converting, .row = 1, .task = task, .convertedPercent = 40}));
    EXPECT_EQ(running[u"event"].toString(), QStringLiteral("converting"));
    EXPECT_EQ(running[u"percent"].toInt(), 40);
    EXPECT_EQ(running[u"path"].toString(), task.outputPath());

    const QJsonObject done = parsed(reportJson(
        {.kind = ReportKind::Completed, .task = task, .path = QStringLiteral("/b.mp3")}));
    EXPECT_EQ(done[u"path"].toString(), QStringLiteral("/b.mp3"));
    EXPECT_FALSE(done.contains(u"rowid"));
}

TEST(TaskReport, progressOfAKnownSizeHasAllFigures)
{
    tasks::TaskInfo task = clip();
    task.bFileCreated = 1;
    task.dwSize = 4'000'000'000U;
    const tasks::TaskProgress progress{.percentHundredths = 5025,
                                       .bytesPerSecond = 2048,
                                       .secondsLeft = 65,
                                       .bytesDownloaded = 3'000'000'000U};

    const QJsonObject report = parsed(
        reportJson({.kind = ReportKind::Progress, .row = 1, .task = task, .progress = progress}));

    EXPECT_EQ(report[u"path"].toString(), QStringLiteral("/videos/A \"clip\".mp4"));
    EXPECT_EQ(report[u"size"].toInteger(), 4'000'000'000);
    EXPECT_EQ(report[u"downloaded"].toInteger(), 3'000'000'000);
    EXPECT_EQ(report[u"secondsLeft"].toInt(), 65);
    EXPECT_DOUBLE_EQ(report[u"percent"].toDouble(), 50.25);
    EXPECT_DOUBLE_EQ(report[u"speed"].toDouble(), 2048);
}

TEST(TaskReport, progressOfAnUnknownSizeHasNoPercentAndNoTimeLeft)
{
    const QJsonObject report =
        parsed(reportJson({.kind = ReportKind::Progress,
                           .task = clip(),
                           .progress = tasks::TaskProgress{.bytesDownloaded = 10}}));

    EXPECT_EQ(report[u"downloaded"].toInt(), 10);
    EXPECT_FALSE(report.contains(u"percent"));
    EXPECT_FALSE(report.contains(u"secondsLeft"));
}

TEST(TaskReport, aStoredTaskCarriesItsColumnsItsRowAndItsState)
{
    tasks::TaskInfo task = clip();
    task.nModeLow = 6;
    task.nModeHigh = 2;
    const QJsonObject stored = parsed(storedTaskJson(70'000, task));

    EXPECT_EQ(stored.size(), 35);
    EXPECT_EQ(stored[u"rowid"].toInteger(), 70'000);
    EXPECT_EQ(stored[u"nDownloadMode"].toInt(), 26);
    EXPECT_EQ(stored[u"dwSize"].toInteger(), -1);
    EXPECT_EQ(stored[u"state"].toString(), QStringLiteral("new"));
    EXPECT_TRUE(stored.contains(u"csAudioBitRateOpts"));
}

TEST(TaskReport, aStoredTaskIsCompletedStoppedOrNew)
{
    tasks::TaskInfo task;
    EXPECT_EQ(storedState(task), QStringLiteral("new"));
    task.bFileCreated = 1;
    EXPECT_EQ(storedState(task), QStringLiteral("stopped"));
    task.nCompletedStatus = 1;
    EXPECT_EQ(storedState(task), QStringLiteral("completed"));
}

} // namespace
} // namespace tollivar::app
