#include "tests/support/no_threads.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"
#include "update/update_checker.h"

#include <QDir>

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

namespace tollivar::update {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using platform::AutoResetEvent;
using Results = std::vector<std::pair<UpdateResult, CheckKind>>;

constexpr auto kLong = 60s;
/// So long that only the end of the thread ends a wait for it.
constexpr std::chrono::hours kForEver{1};

/// The checker with fetches that the test plays.
class UpdateCheckerTest : public ::testing::Test {
protected:
    std::unique_ptr<UpdateChecker> make(UpdateGet get,
                                        const UpdateTimes &times = {RetryPauses{}, kForEver})
    {
        return std::make_unique<UpdateChecker>(UpdatePlaces{u"http://a/"_s,
                                                            m_sandbox.file(u"update.ini"_s),
                                                            m_sandbox.file(u"transit.ini"_s)},
                                               u"1.0.0.0"_s, std::move(get), m_inbox.port(), times);
    }
    /// A fetch of that version.
    GetResult answer(const QByteArray &version) const
    {
        m_sandbox.write(u"transit.ini"_s, "[Version]\r\nMain=" + version + "\r\n");
        return GetResult::Done;
    }
    void waitForResults(std::size_t count)
    {
        test::waitUntil("the results", [&] { return m_results.size() >= count; });
    }

    test::Sandbox m_sandbox;
    Results m_results;
    platform::AppMessageInbox m_inbox{[this](const platform::AppMessage &message) {
        m_results.emplace_back(static_cast<UpdateResult>(message.first),
                               static_cast<CheckKind>(message.second));
    }};
};

TEST_F(UpdateCheckerTest, handsOutWhatItNoticed)
{
    QByteArray version = "2.0.0.0";
    const auto checker =
        make([&](const QString &, const QString &, AutoResetEvent &) { return answer(version); });
    checker->check(CheckKind::Automatic);
    waitForResults(1);
    EXPECT_EQ(checker->noticed().version, u"2.0.0.0"_s);
    version = "1.5.0.0";
    checker->check(CheckKind::Explicit);
    waitForResults(2);
    EXPECT_EQ(checker->noticed().version, u"2.0.0.0"_s);
    EXPECT_EQ(m_results, (Results{{UpdateResult::News, CheckKind::Automatic},
                                  {UpdateResult::NoticedBefore, CheckKind::Explicit}}));
}

TEST_F(UpdateCheckerTest, whoAsksIsAnsweredWhateverElseIsWantedMeanwhile)
{
    AutoResetEvent isFetching;
    AutoResetEvent goOn;
    const auto checker = make([&](const QString &, const QString &, AutoResetEvent &) {
        isFetching.set();
        EXPECT_TRUE(goOn.wait(kLong));
        return answer("1.0.0.0");
    });
    checker->check(CheckKind::Automatic);
    ASSERT_TRUE(isFetching.wait(kLong));
    checker->check(CheckKind::Explicit);
    checker->check(CheckKind::Automatic);
    goOn.set();
    waitForResults(1);
    goOn.set();
    waitForResults(2);
    EXPECT_EQ(m_results, (Results{{UpdateResult::NoUpdate, CheckKind::Automatic},
                                  {UpdateResult::NoUpdate, CheckKind::Explicit}}));
}

TEST_F(UpdateCheckerTest, newsThatCannotBeStoredAreAFailedCheck)
{
    // A folder stands in the place of the local copy.
    ASSERT_TRUE(QDir().mkpath(m_sandbox.file(u"update.ini"_s)));
    const auto checker =
        make([this](const QString &, const QString &, AutoResetEvent &) { return answer("2.0"); });
    checker->check(CheckKind::Explicit);
    waitForResults(1);
    EXPECT_EQ(m_results, (Results{{UpdateResult::Unreachable, CheckKind::Explicit}}));
}

TEST_F(UpdateCheckerTest, aCheckThatIsNoLongerWantedIsNeitherToldNorTriedAgain)
{
    std::atomic<int> fetches = 0;
    AutoResetEvent isFetching;
    AutoResetEvent goOn;
    const auto checker = make([&](const QString &, const QString &, AutoResetEvent &) {
        ++fetches;
        isFetching.set();
        EXPECT_TRUE(goOn.wait(kLong));
        return fetches == 1 ? GetResult::NetworkError
                            : answer(fetches == 2 ? "1.0.0.0" : "2.0.0.0");
    });
    for (std::size_t round = 1; round <= 2; ++round) {
        checker->allowAutomatic(true);
        checker->check(CheckKind::Automatic);
        ASSERT_TRUE(isFetching.wait(kLong));
        checker->allowAutomatic(false);
        goOn.set();
        // Whatever came of it would be told before this.
        checker->check(CheckKind::Explicit);
        ASSERT_TRUE(isFetching.wait(kLong));
        goOn.set();
        waitForResults(round);
    }
    EXPECT_EQ(fetches, 4);
    // The version that came unwanted is still news.
    EXPECT_EQ(m_results, (Results{{UpdateResult::NoUpdate, CheckKind::Explicit},
                                  {UpdateResult::News, CheckKind::Explicit}}));
}

TEST_F(UpdateCheckerTest, aRetryThatIsNoLongerWantedNeverComes)
{
    const UpdateTimes times{RetryPauses{50ms, 50ms, 50ms, 50ms, 50ms}, kForEver};
    std::atomic<int> fetches = 0;
    std::atomic<int> otherFetches = 0;
    const auto failing = [](std::atomic<int> &count) {
        return [&count](const QString &, const QString &, AutoResetEvent &) {
            ++count;
            return GetResult::NetworkError;
        };
    };
    const auto checker = make(failing(fetches), times);
    const auto other = make(failing(otherFetches), times);
    checker->check(CheckKind::Automatic);
    waitForResults(1);
    checker->allowAutomatic(false);
    // One may be under way by now. All would be due before the other one has made its last.
    other->check(CheckKind::Automatic);
    test::waitUntil("the other's attempts", [&] { return otherFetches == 6; });
    EXPECT_LE(fetches, 2);
}

TEST_F(UpdateCheckerTest, aFetchIsCancelledByTheEnd)
{
    std::atomic<bool> wasCancelled = false;
    AutoResetEvent isFetching;
    auto checker = make([&](const QString &, const QString &, AutoResetEvent &stop) {
        isFetching.set();
        wasCancelled = stop.wait(kLong);
        return GetResult::Cancelled;
    });
    checker->check(CheckKind::Explicit);
    ASSERT_TRUE(isFetching.wait(kLong));
    checker.reset();
    EXPECT_TRUE(wasCancelled);
    m_inbox.drain();
    EXPECT_TRUE(m_results.empty());
}

TEST_F(UpdateCheckerTest, endsInEachOfItsStates)
{
    // 100 times: never begun, at work, between attempts, at rest.
    for (int i = 0; i < 100; ++i) {
        auto checker = make([](const QString &, const QString &,
                               AutoResetEvent &) { return GetResult::NetworkError; },
                            {RetryPauses{0ms, 0ms, kForEver}, kForEver});
        if (i % 4 != 0) {
            checker->check(i % 4 == 3 ? CheckKind::Explicit : CheckKind::Automatic);
        }
        if (i % 4 >= 2) {
            waitForResults(m_results.size() + 1);
        }
        checker.reset();
    }
}

TEST_F(UpdateCheckerTest, aFetchThatDoesNotEndIsLetGo)
{
    const auto isFetching = std::make_shared<AutoResetEvent>();
    const auto hang = std::make_shared<AutoResetEvent>();
    const auto ended = std::make_shared<AutoResetEvent>();
    auto checker = make(
        [=](const QString &address, const QString &path, AutoResetEvent &stop) {
            isFetching->set();
            EXPECT_TRUE(hang->wait(kLong));
            // Everything it may use is still there.
            EXPECT_TRUE(stop.isSet());
            EXPECT_EQ(address, u"http://a/?ver=1.0.0.0"_s);
            EXPECT_TRUE(path.endsWith(u"transit.ini"_s));
            ended->set();
            return GetResult::Done;
        },
        {kRetryPauses, 0ms});
    checker->check(CheckKind::Automatic);
    ASSERT_TRUE(isFetching->wait(kLong));
    checker.reset();
    hang->set();
    EXPECT_TRUE(ended->wait(kLong));
    m_inbox.drain();
    EXPECT_TRUE(m_results.empty());
}

TEST_F(UpdateCheckerTest, whoAsksIsToldWhenTheSystemHasNoThreadLeft)
{
    const auto checker = make(
        [this](const QString &, const QString &, AutoResetEvent &) { return answer("1.0.0.0"); });
    {
        const test::NoThreads none;
        checker->check(CheckKind::Explicit);
        waitForResults(1);
    }
    checker->check(CheckKind::Explicit);
    waitForResults(2);
    EXPECT_EQ(m_results, (Results{{UpdateResult::Unreachable, CheckKind::Explicit},
                                  {UpdateResult::NoUpdate, CheckKind::Explicit}}));
}

} // namespace
} // namespace tollivar::update
