#include "companions/sniff_browser/record_sender.h"
#include "platform/auto_reset_event.h"
#include "tests/support/no_threads.h"
#include "tests/support/wait_until.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace tollivar::sniff {
namespace {

using namespace std::chrono_literals;
using platform::AutoResetEvent;

constexpr auto kLong = 60s;

TEST(RecordSender, tellsWhetherTheProgramTookIt)
{
    for (const bool isTaken : {true, false}) {
        RecordSender sender(Recipient::RunningProgram,
                            [isTaken](const QByteArray &) { return isTaken; });
        QSignalSpy sent(&sender, &RecordSender::sent);
        sender.send("record\r\n\r\n");
        test::waitUntil("the answer", [&sent] { return !sent.isEmpty(); });
        EXPECT_EQ(sent.first().first().toBool(), isTaken);
    }
}

TEST(RecordSender, letsWhatWasChosenArriveBeforeItGoes)
{
    const auto arrived = std::make_shared<std::atomic<int>>(0);
    {
        RecordSender sender(
            Recipient::RunningProgram,
            [arrived](const QByteArray &) {
                ++*arrived;
                return true;
            },
            std::chrono::hours(1));
        for (int i = 0; i < 20; ++i) {
            sender.send("record\r\n\r\n");
        }
    }
    EXPECT_EQ(*arrived, 20);
}

TEST(RecordSender, leavesAProgramBehindThatDoesNotAnswer)
{
    const auto hang = std::make_shared<AutoResetEvent>();
    const auto ended = std::make_shared<AutoResetEvent>();
    {
        RecordSender sender(
            Recipient::RunningProgram,
            [hang, ended](const QByteArray &records) {
                EXPECT_TRUE(hang->wait(kLong));
                EXPECT_EQ(records, "record\r\n\r\n");
                ended->set();
                return true;
            },
            0ms);
        sender.send("record\r\n\r\n");
    }
    hang->set();
    EXPECT_TRUE(ended->wait(kLong));
}

TEST(RecordSender, saysThatNobodyTookItWhereNoThreadIsLeft)
{
    RecordSender sender(Recipient::RunningProgram, [](const QByteArray &) { return true; });
    QSignalSpy sent(&sender, &RecordSender::sent);
    {
        const test::NoThreads none;
        sender.send("record\r\n\r\n");
    }
    test::waitUntil("the answer", [&sent] { return !sent.isEmpty(); });
    EXPECT_FALSE(sent.first().first().toBool());
}

} // namespace
} // namespace tollivar::sniff
