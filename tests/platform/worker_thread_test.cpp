#include "platform/auto_reset_event.h"
#include "platform/thread_role.h"
#include "platform/worker_thread.h"
#include "tests/support/no_threads.h"

namespace {

using namespace std::chrono_literals;
using tollivar::platform::AutoResetEvent;
using tollivar::platform::mainThread;
using tollivar::platform::WorkerThread;

constexpr auto kLong = 60s;

TEST(WorkerThread, isAtRestUntilItIsResumed)
{
    const auto hasRun = std::make_shared<std::atomic<bool>>(false);
    WorkerThread thread([hasRun] { *hasRun = true; });
    EXPECT_FALSE(thread.waitForEnd(10ms));
    EXPECT_FALSE(thread.hasEnded());
    EXPECT_FALSE(*hasRun);
    EXPECT_TRUE(thread.resume());
    EXPECT_TRUE(thread.waitForEnd(kLong));
    EXPECT_TRUE(thread.hasEnded());
    EXPECT_TRUE(*hasRun);
}

TEST(WorkerThread, neverRunsWhenItIsNotResumed)
{
    const auto hasRun = std::make_shared<std::atomic<bool>>(false);
    {
        const WorkerThread thread([hasRun] { *hasRun = true; });
    }
    EXPECT_EQ(hasRun.use_count(), 1);
    EXPECT_FALSE(*hasRun);
}

TEST(WorkerThread, hasNotEndedWhileItsFunctionRuns)
{
    const auto stop = std::make_shared<AutoResetEvent>();
    WorkerThread thread([stop] { EXPECT_TRUE(stop->wait(kLong)); });
    EXPECT_TRUE(thread.resume());
    EXPECT_FALSE(thread.waitForEnd(10ms));
    stop->set();
    EXPECT_TRUE(thread.waitForEnd(kLong));
}

TEST(WorkerThread, hasLetGoOfWhatItCapturedWhenItHasEnded)
{
    // 500 threads: catches an end that is told while the captured owner still lives.
    for (int i = 0; i < 500; ++i) {
        const auto captured = std::make_shared<int>(i);
        WorkerThread thread([captured] {});
        EXPECT_TRUE(thread.resume());
        ASSERT_TRUE(thread.waitForEnd(kLong));
        ASSERT_EQ(captured.use_count(), 1);
    }
}

TEST(WorkerThread, isLetGoWhenItsOwnerDies)
{
    const auto stop = std::make_shared<AutoResetEvent>();
    const auto ended = std::make_shared<AutoResetEvent>();
    {
        WorkerThread thread([stop, ended] {
            EXPECT_TRUE(stop->wait(kLong));
            ended->set();
        });
        EXPECT_TRUE(thread.resume());
    }
    stop->set();
    EXPECT_TRUE(ended->wait(kLong));
}

TEST(WorkerThread, endsWhenItsFunctionThrows)
{
    WorkerThread known([] { throw std::runtime_error("broken"); });
    WorkerThread unknown([] { throw 1; });
    EXPECT_TRUE(known.resume());
    EXPECT_TRUE(unknown.resume());
    EXPECT_TRUE(known.waitForEnd(kLong));
    EXPECT_TRUE(unknown.waitForEnd(kLong));
}

TEST(WorkerThread, hasEndedUnrunWhenTheSystemHasNoThreadLeft)
{
    const auto captured = std::make_shared<bool>(false);
    WorkerThread thread([captured] { *captured = true; });
    {
        const tollivar::test::NoThreads none;
        EXPECT_FALSE(thread.resume());
    }
    EXPECT_TRUE(thread.hasEnded());
    EXPECT_TRUE(thread.waitForEnd(0ms));
    EXPECT_FALSE(*captured);
    EXPECT_EQ(captured.use_count(), 1) << "what it captured is let go";
}

TEST(WorkerThread, comesAndGoesManyTimes)
{
    // 2,000 threads, some waited for, some let go, some never started.
    const auto runs = std::make_shared<std::atomic<int>>(0);
    for (int i = 0; i < 2'000; ++i) {
        WorkerThread thread([runs] { ++*runs; });
        if (i % 4 != 0) {
            EXPECT_TRUE(thread.resume());
        }
        if (i % 4 == 1) {
            ASSERT_TRUE(thread.waitForEnd(kLong));
        }
    }
    while (runs.use_count() > 1) {
        std::this_thread::yield();
    }
    EXPECT_EQ(*runs, 1'500);
}

TEST(MainThread, isHeldByTheThreadOfMainOnly)
{
    EXPECT_TRUE(mainThread.isHeld());
    mainThread.assertHeld();
    bool isHeldElsewhere = true;
    std::thread([&isHeldElsewhere] { isHeldElsewhere = mainThread.isHeld(); }).join();
    EXPECT_FALSE(isHeldElsewhere);
}

TEST(MainThreadDeathTest, endsTheProgramWhenAnotherThreadTakesItsPart)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(std::thread([] { mainThread.assertHeld(); }).join(), "main thread");
}

} // namespace
