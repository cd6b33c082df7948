#include "ui/main_window/total_progress.h"

#include <gtest/gtest.h>

namespace tollivar::ui {

TEST(TotalProgress, isNothingWhileNoTaskRunsOrWaits)
{
    TotalProgress total;
    EXPECT_EQ(total.update(0, 0, 0), std::nullopt);
    total.countCompleted();
    EXPECT_EQ(total.update(0, 0, 0), std::nullopt);
}

TEST(TotalProgress, countsRunningAndWaitingTasksTheSame)
{
    TotalProgress total;
    EXPECT_EQ(total.update(2, 2, 1.0), 0.25);
    EXPECT_EQ(total.update(0, 1, 0), 0.0);
    EXPECT_EQ(total.update(1, 0, 1.0), 1.0);
}

TEST(TotalProgress, doesNotGoBackWhenATaskIsCompleted)
{
    TotalProgress total;
    EXPECT_EQ(total.update(2, 0, 1.5), 0.75);
    total.countCompleted();
    EXPECT_EQ(total.update(1, 0, 0.5), 0.75);
}

TEST(TotalProgress, beginsAnewWhenEverythingRested)
{
    TotalProgress total;
    total.countCompleted();
    EXPECT_EQ(total.update(1, 0, 0), 0.5);
    EXPECT_EQ(total.update(0, 0, 0), std::nullopt);
    EXPECT_EQ(total.update(1, 0, 0), 0.0);
}

} // namespace tollivar::ui
