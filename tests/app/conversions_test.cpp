#include "app/conversions.h"
#include "convert/converter_command.h"
#include "convert/profile_table.h"
#include "tests/support/no_threads.h"
#include "tests/support/rtmp_server.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;

/// Conversions side by side, with the real converter.
class ConversionsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_before = QDir::currentPath();
        QDir::setCurrent(QStringLiteral(TOLLIVAR_PROGRAMS));
    }
    void TearDown() override { QDir::setCurrent(m_before); }

    /// A finished task with a few seconds of sound, to become music.
    tasks::TaskInfo make(const QString &name, int seconds) const
    {
        tasks::TaskInfo task;
        task.strOutputFolder = m_sandbox.path() + u'/';
        task.strOutputName = name;
        task.strFileType = u".mp4"_s;
        EXPECT_TRUE(convert::ProfileTable::BuildProfiles().ApplyProfileDefaults(
            u"MP3 - MPEG Layer-3 (*.mp3)"_s, task.m_ConvOpts));
        if (seconds > 0) {
            test::runToEnd({u"ffmpeg"_s, u"-nostdin"_s, u"-v"_s, u"error"_s, u"-y"_s, u"-f"_s,
                            u"lavfi"_s, u"-i"_s, u"sine=duration=%1"_s.arg(seconds),
                            task.outputPath()});
        }
        return task;
    }

    void waitForEnd(std::uint32_t id)
    {
        test::waitUntil("the end of a conversion",
                        [&] { return !m_conversions.percent(id).has_value(); });
    }

    test::Sandbox m_sandbox;
    QString m_before;
    int m_changes = 0;
    Conversions m_conversions{[this](std::uint32_t) { ++m_changes; }};
};

TEST_F(ConversionsTest, eachTaskBecomesItsFile)
{
    const auto first = make(u"one"_s, 2);
    const auto second = make(u"two"_s, 2);
    m_conversions.start(1, first);
    m_conversions.start(2, second);
    m_conversions.start(2, second);
    EXPECT_EQ(m_conversions.percent(2), 0);
    waitForEnd(1);
    waitForEnd(2);
    EXPECT_TRUE(QFile::exists(convert::convertedPath(first)));
    EXPECT_TRUE(QFile::exists(convert::convertedPath(second)));
    EXPECT_EQ(m_conversions.failure(1), QString());
    EXPECT_GE(m_changes, 4);
}

TEST_F(ConversionsTest, aFailureIsKeptWithItsReasonUntilTheNextTry)
{
    const auto missing = make(u"missing"_s, 0);
    m_conversions.start(7, missing);
    waitForEnd(7);
    EXPECT_TRUE(m_conversions.failure(7).contains(u"No such file"_s))
        << m_conversions.failure(7).toStdString();
    m_conversions.stop(7);
    EXPECT_EQ(m_conversions.failure(7), QString());
}

TEST_F(ConversionsTest, eachFailsWhereNoThreadIsLeftAndCanBeTriedAgain)
{
    const auto first = make(u"one"_s, 1);
    const auto second = make(u"two"_s, 1);
    {
        const test::NoThreads none;
        m_conversions.start(1, first);
        m_conversions.start(2, second);
        waitForEnd(1);
        waitForEnd(2);
    }
    EXPECT_FALSE(m_conversions.failure(1).isEmpty());
    EXPECT_FALSE(m_conversions.failure(2).isEmpty());
    m_conversions.start(1, first);
    waitForEnd(1);
    EXPECT_EQ(m_conversions.failure(1), QString());
    EXPECT_TRUE(QFile::exists(convert::convertedPath(first)));
}

TEST_F(ConversionsTest, aFailureHasTheConvertersLastLineAndTheDownloadStays)
{
    const auto damaged = make(u"damaged"_s, 0);
    m_sandbox.write(u"damaged.mp4"_s, "no media");
    m_conversions.start(3, damaged);
    waitForEnd(3);
    EXPECT_TRUE(m_conversions.failure(3).contains(u"Invalid data found"_s))
        << m_conversions.failure(3).toStdString();
    EXPECT_EQ(m_sandbox.read(u"damaged.mp4"_s), "no media");
    EXPECT_FALSE(QFile::exists(convert::convertedPath(damaged)));
}

TEST_F(ConversionsTest, atMostOneForEveryTwoCoresRunsAtATime)
{
    const int limit = std::max(1, static_cast<int>(std::thread::hardware_concurrency()) / 2);
    const int count = limit + 2;
    std::vector<tasks::TaskInfo> converted;
    for (int id = 1; id <= count; ++id) {
        // Long enough to be seen side by side, were they all begun at once.
        converted.push_back(make(u"sound %1"_s.arg(id), 300));
    }
    for (int id = 1; id <= count; ++id) {
        m_conversions.start(static_cast<std::uint32_t>(id),
                            converted[static_cast<std::size_t>(id) - 1]);
    }
    qsizetype most = 0;
    test::waitUntil("the end of all", [&] {
        const auto halves =
            QDir(m_sandbox.path()).entryList({u".converting-*"_s}, QDir::Files | QDir::Hidden);
        most = std::max(most, halves.size());
        return !m_conversions.percent(static_cast<std::uint32_t>(count)).has_value();
    });
    EXPECT_GE(most, 1);
    EXPECT_LE(most, limit);
    for (int id = 1; id < count; ++id) {
        waitForEnd(static_cast<std::uint32_t>(id));
    }
    for (const tasks::TaskInfo &task : converted) {
        EXPECT_TRUE(QFile::exists(convert::convertedPath(task)));
    }
}

TEST_F(ConversionsTest, aTaskStartedRightAfterItsStopIsConvertedAllTheSame)
{
    const auto task = make(u"one"_s, 2);
    m_conversions.start(1, task);
    m_conversions.stop(1);
    m_conversions.start(1, task);
    waitForEnd(1);
    EXPECT_EQ(m_conversions.failure(1), QString());
    EXPECT_TRUE(QFile::exists(convert::convertedPath(task)));
}

TEST_F(ConversionsTest, aStopForgetsWhatWaitsAndEndsWhatRuns)
{
    const auto task = make(u"one"_s, 2);
    for (std::uint32_t id = 1; id <= 20; ++id) {
        m_conversions.start(id, task);
    }
    m_conversions.stop(20);
    EXPECT_FALSE(m_conversions.percent(20));
    m_conversions.stopAll();
    EXPECT_FALSE(m_conversions.percent(1));
    EXPECT_FALSE(m_conversions.percent(19));
}

} // namespace
} // namespace tollivar::app
