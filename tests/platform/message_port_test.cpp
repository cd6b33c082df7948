#include "platform/message_port.h"
#include "tests/support/wait_until.h"

#include <QCoreApplication>
#include <QEvent>

#include <map>

namespace {

using tollivar::platform::AppMessage;
using tollivar::platform::AppMessageId;
using tollivar::platform::AppMessageInbox;
using tollivar::platform::AppMessagePort;
using tollivar::platform::Delivery;
using tollivar::test::waitUntil;

constexpr auto kEvent = AppMessageId::TaskEvent;

/// An inbox that notes what it is handed as {first, second}.
class Messages : public testing::Test {
protected:
    using Values = std::vector<std::pair<std::uint64_t, std::uint64_t>>;

    void run() { QCoreApplication::processEvents(); }

    Values m_heard;
    AppMessageInbox m_inbox{
        [this](const AppMessage &message) { m_heard.emplace_back(message.first, message.second); }};
    AppMessagePort m_port = m_inbox.port();
};

TEST_F(Messages, arriveInOrderFromTheEventLoopOnly)
{
    for (std::uint64_t i = 0; i < 100; ++i) {
        m_port.post(kEvent, i, i * i);
    }
    EXPECT_TRUE(m_heard.empty());
    run();
    ASSERT_EQ(m_heard.size(), 100U);
    for (std::uint64_t i = 0; i < 100; ++i) {
        EXPECT_EQ(m_heard[i], std::pair(i, i * i));
    }
}

TEST_F(Messages, carryNumberAndBothValuesWhole)
{
    std::vector<AppMessage> heard;
    AppMessageInbox inbox([&heard](const AppMessage &message) { heard.push_back(message); });
    inbox.port().post(AppMessageId::UpdateResult, ~std::uint64_t{0}, std::uint64_t{1} << 63U);
    inbox.drain();
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_EQ(heard[0].id, AppMessageId::UpdateResult);
    EXPECT_EQ(heard[0].first, ~std::uint64_t{0});
    EXPECT_EQ(heard[0].second, std::uint64_t{1} << 63U);
}

TEST_F(Messages, areMergedWhenOnlyTheNewestCounts)
{
    m_port.post(kEvent, 1, 10, Delivery::NewestWins);
    m_port.post(kEvent, 2, 20, Delivery::NewestWins);
    m_port.post(kEvent, 1, 11, Delivery::NewestWins);
    m_port.post(AppMessageId::UpdateResult, 1, 12, Delivery::NewestWins);
    run();
    EXPECT_EQ(m_heard, (Values{{1, 11}, {2, 20}, {1, 12}}));
}

TEST_F(Messages, areNeverMergedWithThoseOfAnEarlierBatch)
{
    m_port.post(kEvent, 1, 10, Delivery::NewestWins);
    run();
    m_port.post(kEvent, 1, 11, Delivery::NewestWins);
    run();
    EXPECT_EQ(m_heard, (Values{{1, 10}, {1, 11}}));
}

TEST_F(Messages, areNeverMergedAcrossOneThatCountsEachTime)
{
    // Progress of a second run must not take the place of the first run's, before its end.
    m_port.post(kEvent, 1, 10, Delivery::NewestWins);
    m_port.post(kEvent, 7, 0);
    m_port.post(kEvent, 1, 11, Delivery::NewestWins);
    m_port.post(kEvent, 1, 12, Delivery::NewestWins);
    m_port.post(kEvent, 7, 0);
    run();
    EXPECT_EQ(m_heard, (Values{{1, 10}, {7, 0}, {1, 12}, {7, 0}}));
}

TEST_F(Messages, areDroppedWithTheirReceiver)
{
    auto inbox = std::make_unique<AppMessageInbox>([](const AppMessage &) { FAIL(); });
    const AppMessagePort port = inbox->port();
    port.post(kEvent, 1, 1);
    inbox.reset();
    port.post(kEvent, 2, 2);
    run();
}

TEST_F(Messages, areDroppedByAnEmptyPort)
{
    const AppMessagePort nowhere;
    EXPECT_FALSE(nowhere);
    EXPECT_TRUE(m_port);
    nowhere.post(kEvent, 1, 1);
}

TEST_F(Messages, waitForTheNextTurnWhenTheHandlerPostsThem)
{
    // A handler that always posts again would otherwise never let the loop go on.
    std::uint64_t handled = 0;
    AppMessageInbox *self = nullptr;
    AppMessageInbox inbox([&](const AppMessage &) {
        ++handled;
        self->port().post(kEvent, handled, 0);
    });
    self = &inbox;
    inbox.port().post(kEvent, 0, 0);
    inbox.drain();
    EXPECT_EQ(handled, 1U);
    inbox.drain();
    EXPECT_EQ(handled, 2U);
}

TEST_F(Messages, arriveInOrderInALoopThatTheHandlerRuns)
{
    // A handler that opens a dialog: the rest of its batch is not held up until it is closed.
    Values heard;
    AppMessageInbox *self = nullptr;
    AppMessageInbox inbox([&](const AppMessage &message) {
        heard.emplace_back(message.first, message.second);
        if (message.first == 1) {
            self->port().post(kEvent, 4, 0);
            waitUntil("the other messages", [&heard] { return heard.size() == 4; });
        }
    });
    self = &inbox;
    for (std::uint64_t i = 1; i <= 3; ++i) {
        inbox.port().post(kEvent, i, 0);
    }
    run();
    EXPECT_EQ(heard, (Values{{1, 0}, {2, 0}, {3, 0}, {4, 0}}));
}

TEST_F(Messages, endWithAnInboxThatItsHandlerDestroys)
{
    std::unique_ptr<AppMessageInbox> inbox;
    int handled = 0;
    inbox = std::make_unique<AppMessageInbox>([&](const AppMessage &) {
        ++handled;
        inbox.reset();
    });
    const AppMessagePort port = inbox->port();
    port.post(kEvent, 1, 0);
    port.post(kEvent, 2, 0);
    run();
    EXPECT_EQ(handled, 1);
    EXPECT_EQ(inbox, nullptr);
}

/// Counts the wake-ups of an inbox.
class EventCounter final : public QObject {
public:
    int count = 0;
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        count += event->type() >= QEvent::User ? 1 : 0;
        return false;
    }
};

TEST_F(Messages, wakeTheReceiverAboutOnceForABatch)
{
    EventCounter counter;
    m_inbox.installEventFilter(&counter);
    for (std::uint64_t i = 0; i < 10'000; ++i) {
        m_port.post(kEvent, i, 0);
    }
    run();
    EXPECT_EQ(m_heard.size(), 10'000U);
    EXPECT_LE(counter.count, 2);
}

} // namespace
