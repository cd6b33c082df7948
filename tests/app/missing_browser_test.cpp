#include "app/missing_browser.h"
#include "tests/support/no_threads.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

class MissingBrowserTest : public ::testing::Test {
protected:
    void SetUp() override { qputenv("TOLLIVAR_BROWSER", "/nonexistent"); }
    void TearDown() override { qunsetenv("TOLLIVAR_BROWSER"); }
};

TEST_F(MissingBrowserTest, isToldAfterTheFirstPageThatGaveNothingAndNeverAgain)
{
    int told = 0;
    MissingBrowser first([&] { ++told; });
    MissingBrowser later([&] { told += 10; });
    first.pageFailed();
    first.pageFailed();
    test::waitUntil("the word", [&] { return told > 0; });
    first.pageFailed();
    later.pageFailed();
    test::waitUntil("the other's word", [&] { return told >= 10; });
    EXPECT_EQ(told, 11);
}

TEST_F(MissingBrowserTest, isLookedForAgainWhereNoThreadWasLeft)
{
    int told = 0;
    MissingBrowser missing([&] { ++told; });
    {
        const test::NoThreads none;
        missing.pageFailed();
    }
    missing.pageFailed();
    test::waitUntil("the word", [&] { return told > 0; });
}

TEST_F(MissingBrowserTest, isSeenOnlyWhereThereIsNone)
{
    EXPECT_TRUE(lacksBrowser());
    qputenv("TOLLIVAR_BROWSER", "/bin/true");
    EXPECT_FALSE(lacksBrowser());
}

} // namespace
} // namespace tollivar::app
