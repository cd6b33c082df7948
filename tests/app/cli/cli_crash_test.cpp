#include "tests/support/http_site.h"
#include "tests/support/program_run.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <csignal>
#include <random>
#include <set>
#include <thread>

namespace tollivar::app {
namespace {

using test::ProgramRun;

QStringList downloadArguments(const test::HttpSite &site, int round)
{
    QStringList arguments = {QStringLiteral("download"), QStringLiteral("--mode"),
                             QStringLiteral("direct"),   QStringLiteral("--folder"),
                             QStringLiteral("out"),      QStringLiteral("--json")};
    for (int i = 0; i < 6; ++i) {
        arguments.append(site.address(i % 2 == 0 ? "/quick.mp4" : "/stalled.mp4") +
                         QStringLiteral("?%1-%2").arg(round).arg(i));
    }
    return arguments;
}

// Would catch a task that was acknowledged before it was safe, and a database that a kill breaks.
TEST(CliCrash, aKillAtAnyMomentLosesNoTaskThatWasAcknowledged)
{
    constexpr int kRounds = 50;
    constexpr unsigned kSeed = 20'261'120;
    SCOPED_TRACE(testing::Message() << "seed " << kSeed);
    std::mt19937 random(kSeed);
    const test::Sandbox sandbox;
    test::HttpSite site;
    std::set<qint64> acknowledged;
    for (int round = 0; round < kRounds; ++round) {
        for (int i = 0; i < 6; ++i) {
            const QByteArray query = '?' + QByteArray::number(round) + '-' + QByteArray::number(i);
            site.on("/quick.mp4" + query, test::answer(QByteArray(20'000, 'v')));
            site.on("/stalled.mp4" + query, test::answerStalled("begin", 1'000));
        }
        ProgramRun program(sandbox, QStringLiteral("tollivar-cli"), downloadArguments(site, round));
        // In every other round a task is known to be there; else the start itself is cut.
        if (round % 2 == 1) {
            program.waitForOutput("\"added\"");
        }
        // The moment is what varies; nothing is expected of it.
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 120));
        program.signal(SIGKILL);
        EXPECT_EQ(program.finish(), -1);
        for (const QJsonObject &event : program.events()) {
            acknowledged.insert(event[u"rowid"].toInteger());
        }
    }
    ProgramRun list(sandbox, QStringLiteral("tollivar-cli"),
                    {QStringLiteral("list"), QStringLiteral("--json")});
    ASSERT_EQ(list.finish(), 0) << list.errors().constData();
    std::set<qint64> stored;
    for (const auto &task : QJsonDocument::fromJson(list.output()).array()) {
        stored.insert(task[u"rowid"].toInteger());
    }
    EXPECT_FALSE(acknowledged.empty());
    for (const qint64 row : acknowledged) {
        EXPECT_TRUE(stored.contains(row)) << row;
    }
}

} // namespace
} // namespace tollivar::app
