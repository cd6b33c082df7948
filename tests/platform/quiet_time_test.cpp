#include "platform/quiet_time.h"
#include "tests/support/notification_service.h"
#include "tests/support/wait_until.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <optional>

namespace tollivar::platform {

using Answer = test::NotificationService::Answer;

/// One bus for all cases: a process keeps to the first that it finds.
class QuietTime : public ::testing::Test {
protected:
    static void SetUpTestSuite() { sharedBus = std::make_unique<test::SessionBus>(); }
    static void TearDownTestSuite() { sharedBus.reset(); }

    std::optional<Notices> ask()
    {
        askForQuietTime(&m_context, [this](Notices notices) { m_told = notices; });
        EXPECT_FALSE(m_told) << "told within the question";
        test::waitUntil("the answer", [this] { return m_told.has_value(); });
        return std::exchange(m_told, std::nullopt);
    }

    static inline std::unique_ptr<test::SessionBus> sharedBus;
    QObject m_context;
    std::optional<Notices> m_told;
};

TEST_F(QuietTime, isWhatTheNotificationServiceSays)
{
    test::NotificationService service(*sharedBus);
    EXPECT_EQ(ask(), Notices::Welcome);
    service.answer(Answer::Yes);
    EXPECT_EQ(ask(), Notices::Unwanted);
    service.answer(Answer::No);
    EXPECT_EQ(ask(), Notices::Welcome);
    EXPECT_EQ(service.questions(), 3);
}

TEST_F(QuietTime, isNotWhereNobodyShowsNotices)
{
    EXPECT_EQ(ask(), Notices::Welcome);
}

TEST_F(QuietTime, isNotWhereTheServiceDoesNotKnowIt)
{
    test::NotificationService service(*sharedBus);
    service.answer(Answer::NoSuchProperty);
    EXPECT_EQ(ask(), Notices::Welcome);
    service.answer(Answer::Text);
    EXPECT_EQ(ask(), Notices::Welcome);
    EXPECT_EQ(service.questions(), 2);
}

TEST_F(QuietTime, isNotWaitedForWhenTheServiceHangs)
{
    test::NotificationService service(*sharedBus);
    service.answer(Answer::Silence);
    QElapsedTimer waited;
    waited.start();
    EXPECT_EQ(ask(), Notices::Welcome);
    // The bus itself would wait for 25 s.
    EXPECT_LT(waited.elapsed(), 10'000);
    EXPECT_EQ(service.questions(), 1);
}

TEST_F(QuietTime, isNotToldToWhoIsGone)
{
    test::NotificationService service(*sharedBus);
    bool isTold = false;
    auto gone = std::make_unique<QObject>();
    askForQuietTime(gone.get(), [&isTold](Notices) { isTold = true; });
    gone.reset();
    EXPECT_EQ(ask(), Notices::Welcome);
    EXPECT_EQ(service.questions(), 2);
    EXPECT_FALSE(isTold);
}

} // namespace tollivar::platform
