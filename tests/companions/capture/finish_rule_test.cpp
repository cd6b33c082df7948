#include "companions/capture/finish_rule.h"

#include <gtest/gtest.h>

namespace tollivar::capture {
namespace {

using std::chrono::milliseconds;

/// Moments in milliseconds after the page was asked for.
WatchProgress::TimePoint at(int moment)
{
    return WatchProgress::TimePoint(milliseconds(1'000'000 + moment));
}

WatchProgress askedFor()
{
    WatchProgress progress;
    progress.begun = progress.lastTraffic = at(0);
    return progress;
}

/// A page that was answered and has loaded, and is quiet since.
WatchProgress loadedPage()
{
    WatchProgress progress = askedFor();
    progress.answered = at(100);
    progress.loaded = at(300);
    progress.lastTraffic = at(300);
    progress.isTitleKnown = true;
    return progress;
}

/// The same with a medium that was found and is well known since.
WatchProgress foundMedium()
{
    WatchProgress progress = loadedPage();
    progress.found = progress.changed = at(200);
    return progress;
}

TEST(FinishRule, aGoodMediumOnALoadedPageNeedsOnlyToSettle)
{
    EXPECT_FALSE(isFinished(foundMedium(), at(399)));
    EXPECT_TRUE(isFinished(foundMedium(), at(400)));
}

TEST(FinishRule, newsOfMediaPutTheEndOffButNotForEver)
{
    WatchProgress progress = foundMedium();
    progress.changed = at(1'600);
    EXPECT_FALSE(isFinished(progress, at(1'690)));
    EXPECT_TRUE(isFinished(progress, at(1'700)));
}

TEST(FinishRule, aPageThatNeverFinishesLoadingStillYieldsItsMedium)
{
    WatchProgress progress = foundMedium();
    progress.loaded.reset();
    progress.isBusy = true;
    EXPECT_FALSE(isFinished(progress, at(899)));
    EXPECT_TRUE(isFinished(progress, at(900)));
}

TEST(FinishRule, theTitleIsWaitedForButNotForEver)
{
    WatchProgress progress = foundMedium();
    progress.isTitleKnown = false;
    progress.loaded.reset();
    EXPECT_FALSE(isFinished(progress, at(2'699)));
    EXPECT_TRUE(isFinished(progress, at(2'700)));
}

TEST(FinishRule, aLoadedPageWithoutATitleHasNone)
{
    WatchProgress progress = foundMedium();
    progress.isTitleKnown = false;
    EXPECT_TRUE(isFinished(progress, at(400)));
}

TEST(FinishRule, aLoadedPageWithoutMediaGetsAGraceForItsScripts)
{
    EXPECT_FALSE(isFinished(loadedPage(), at(3'299)));
    EXPECT_TRUE(isFinished(loadedPage(), at(3'300)));
}

TEST(FinishRule, trafficLengthensTheGrace)
{
    WatchProgress progress = loadedPage();
    progress.lastTraffic = at(3'200);
    EXPECT_FALSE(isFinished(progress, at(4'199)));
    EXPECT_TRUE(isFinished(progress, at(4'200)));
}

TEST(FinishRule, aRequestThatWaitsLengthensTheGraceToItsLimit)
{
    WatchProgress progress = loadedPage();
    progress.isBusy = true;
    EXPECT_FALSE(isFinished(progress, at(5'299)));
    EXPECT_TRUE(isFinished(progress, at(5'300)));
}

TEST(FinishRule, aPageWithoutMediaIsGivenUpWithinTenSecondsOfItsAnswer)
{
    WatchProgress progress = askedFor();
    progress.answered = at(100);
    progress.isBusy = true;
    progress.lastTraffic = at(9'000);
    EXPECT_FALSE(isFinished(progress, at(9'099)));
    EXPECT_TRUE(isFinished(progress, at(9'100)));
}

TEST(FinishRule, aSlowServerIsWaitedForLonger)
{
    EXPECT_FALSE(isFinished(askedFor(), at(19'999)));
    EXPECT_TRUE(isFinished(askedFor(), at(20'000)));
}

} // namespace
} // namespace tollivar::capture
