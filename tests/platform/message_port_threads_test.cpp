#include "platform/message_port.h"
#include "tests/support/wait_until.h"

#include <QCoreApplication>

#include <map>

namespace {

using tollivar::platform::AppMessage;
using tollivar::platform::AppMessageId;
using tollivar::platform::AppMessageInbox;
using tollivar::platform::AppMessagePort;
using tollivar::platform::Delivery;
using tollivar::test::waitUntil;

constexpr auto kEvent = AppMessageId::TaskEvent;

TEST(MessageThreads, keepTheOrderOfEachSender)
{
    // 8 senders, 5,000 messages each: catches a lost, doubled or overtaken message.
    constexpr std::uint64_t senders = 8;
    constexpr std::uint64_t each = 5'000;
    std::map<std::uint64_t, std::uint64_t> next;
    std::uint64_t total = 0;
    bool isOrdered = true;
    AppMessageInbox inbox([&](const AppMessage &message) {
        isOrdered = isOrdered && next[message.first]++ == message.second;
        ++total;
    });
    std::vector<std::thread> threads;
    for (std::uint64_t sender = 0; sender < senders; ++sender) {
        threads.emplace_back([port = inbox.port(), sender] {
            for (std::uint64_t i = 0; i < each; ++i) {
                port.post(kEvent, sender, i);
            }
        });
    }
    waitUntil("all messages", [&total] { return total == senders * each; });
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(isOrdered);
}

TEST(MessageThreads, neverGoBackInProgressAndDeliverTheLast)
{
    constexpr std::uint64_t senders = 4;
    constexpr std::uint64_t last = 20'000;
    std::map<std::uint64_t, std::uint64_t> newest;
    bool isForward = true;
    std::uint64_t ended = 0;
    AppMessageInbox inbox([&](const AppMessage &message) {
        isForward = isForward && message.second >= newest[message.first];
        newest[message.first] = message.second;
        ended += message.second == last ? 1 : 0;
    });
    std::vector<std::thread> threads;
    for (std::uint64_t sender = 0; sender < senders; ++sender) {
        threads.emplace_back([port = inbox.port(), sender] {
            for (std::uint64_t i = 1; i <= last; ++i) {
                port.post(kEvent, sender, i, Delivery::NewestWins);
            }
        });
    }
    waitUntil("every sender's last value", [&ended] { return ended == senders; });
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(isForward);
}

TEST(MessageThreads, mayPostWhileTheReceiverDies)
{
    // 2,000 inboxes under a flood: catches a message that is posted to a dead receiver.
    std::mutex mutex;
    AppMessagePort target;
    std::atomic<bool> isOver = false;
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([&] {
            while (!isOver) {
                AppMessagePort port;
                {
                    const std::lock_guard lock(mutex);
                    port = target;
                }
                for (std::uint64_t i = 0; i < 20; ++i) {
                    port.post(kEvent, i, i, i % 2 == 0 ? Delivery::Each : Delivery::NewestWins);
                }
            }
        });
    }
    for (int i = 0; i < 2'000; ++i) {
        AppMessageInbox inbox([](const AppMessage &) {});
        {
            const std::lock_guard lock(mutex);
            target = inbox.port();
        }
        inbox.drain();
    }
    isOver = true;
    for (std::thread &thread : threads) {
        thread.join();
    }
}

TEST(MessageThreads, leaveNothingWhenInboxesComeAndGo)
{
    // 10,000 inboxes, each with messages that nobody takes.
    int delivered = 0;
    for (std::uint64_t i = 0; i < 10'000; ++i) {
        const AppMessageInbox inbox([&delivered](const AppMessage &) { ++delivered; });
        inbox.port().post(kEvent, i, 0);
        inbox.port().post(kEvent, i, 0, Delivery::NewestWins);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(delivered, 0);
}

} // namespace
