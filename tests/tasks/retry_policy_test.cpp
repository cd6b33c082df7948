#include "tasks/retry_policy.h"

#include <gtest/gtest.h>

namespace tollivar::tasks {
namespace {

TaskInfo direct(const QString &type)
{
    TaskInfo task;
    task.nModeLow = 6;
    task.strFileType = type;
    return task;
}

TEST(RetryPolicy, theLastAttemptIsTheMaximum)
{
    const RetryPolicy policy{.maximumRetries = 3};
    EXPECT_TRUE(policy.runsAgain(3));
    EXPECT_FALSE(policy.runsAgain(4));
    EXPECT_FALSE(RetryPolicy{.maximumRetries = 0}.runsAgain(1));
}

TEST(RetryPolicy, aDirectFileIsLookedUpLikeAPageFromTheSecondRetryOn)
{
    const RetryPolicy policy{.maximumRetries = 3};
    EXPECT_EQ(policy.methodOfRetry(direct(QStringLiteral(".mp4")), 1), 6);
    EXPECT_EQ(policy.methodOfRetry(direct(QStringLiteral(".mp4")), 2), 0);
    EXPECT_EQ(policy.methodOfRetry(direct(QStringLiteral(".swf")), 2), 2);
    EXPECT_EQ(policy.methodOfRetry(direct(QStringLiteral(".SwF")), 3), 2);
}

TEST(RetryPolicy, otherMethodsAndASwitchedOffFlagChangeNothing)
{
    TaskInfo page;
    page.nModeLow = 1;
    EXPECT_EQ(RetryPolicy{.maximumRetries = 3}.methodOfRetry(page, 2), 1);
    const RetryPolicy off{.maximumRetries = 3, .switchesMode = false};
    EXPECT_EQ(off.methodOfRetry(direct(QStringLiteral(".swf")), 2), 6);
}

} // namespace
} // namespace tollivar::tasks
