#include "tasks/slot_queue.h"

#include <gtest/gtest.h>

namespace tollivar::tasks {
namespace {

TEST(SlotQueue, theOneThatWaitedLongestIsFirst)
{
    SlotQueue queue(1);
    queue.enqueue(5);
    queue.enqueue(3);
    const auto all = [](std::uint32_t) { return true; };
    EXPECT_EQ(queue.takeFirst(all), 5U);
    EXPECT_EQ(queue.takeFirst(all), 3U);
    EXPECT_EQ(queue.takeFirst(all), std::nullopt);
}

TEST(SlotQueue, idsThatNoLongerWaitAreDroppedOnTheWay)
{
    SlotQueue queue(1);
    for (const std::uint32_t id : {1U, 2U, 3U}) {
        queue.enqueue(id);
    }
    EXPECT_EQ(queue.takeFirst([](std::uint32_t id) { return id == 3; }), 3U);
    EXPECT_EQ(queue.takeFirst([](std::uint32_t) { return true; }), std::nullopt);
}

TEST(SlotQueue, countsWhatRunsAgainstTheMaximum)
{
    SlotQueue queue(1);
    EXPECT_TRUE(queue.hasFreeSlot());
    queue.take();
    EXPECT_FALSE(queue.hasFreeSlot());
    queue.setMaximum(2);
    EXPECT_TRUE(queue.hasFreeSlot());
    queue.setMaximum(0);
    EXPECT_FALSE(queue.hasFreeSlot());
    queue.release();
    EXPECT_EQ(queue.running(), 0);
}

} // namespace
} // namespace tollivar::tasks
