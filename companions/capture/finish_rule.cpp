#include "companions/capture/finish_rule.h"

namespace tollivar::capture {

using std::chrono::milliseconds;

namespace {

using TimePoint = WatchProgress::TimePoint;

/// After a good medium: the rest of the page may bring a better one until it has loaded, which a
/// page that never finishes loading must not stretch.
constexpr milliseconds kWaitForLoad{700};
/// After the last change in what is known of the media, which a stream of news must not stretch.
constexpr milliseconds kSettle{200};
constexpr milliseconds kLongestSettle{1'500};
/// A page that computes for ever never tells its title.
constexpr milliseconds kWaitForTitle{2'500};

/// Without a good medium: after the page has loaded, scripts may still begin to fetch.
constexpr milliseconds kGrace{3'000};
constexpr milliseconds kQuiet{1'000};
constexpr milliseconds kGraceWhileBusy{5'000};
/// A page that shows nothing to play by then has nothing.
constexpr milliseconds kLongestWithNothing{9'000};
constexpr milliseconds kLongestWithoutAnswer{20'000};

bool isSettled(const WatchProgress &progress, TimePoint now)
{
    const auto sinceFound = now - *progress.found;
    const bool isComplete = progress.loaded || sinceFound >= kWaitForLoad;
    const bool isQuiet =
        now - progress.changed.value_or(*progress.found) >= kSettle || sinceFound >= kLongestSettle;
    // A loaded page without a title has none.
    const bool isNamed = progress.isTitleKnown || progress.loaded || sinceFound >= kWaitForTitle;
    return isComplete && isQuiet && isNamed;
}

} // namespace

bool isFinished(const WatchProgress &progress, TimePoint now)
{
    if (progress.found) {
        return isSettled(progress, now);
    }
    if (!progress.answered) {
        return now - progress.begun >= kLongestWithoutAnswer;
    }
    if (now - *progress.answered >= kLongestWithNothing) {
        return true;
    }
    if (!progress.loaded) {
        return false;
    }
    const bool isQuiet = !progress.isBusy && now - progress.lastTraffic >= kQuiet;
    return now - *progress.loaded >= (isQuiet ? kGrace : kGraceWhileBusy);
}

} // namespace tollivar::capture
