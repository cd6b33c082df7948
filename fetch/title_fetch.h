#pragma once

#include "fetch/step_result.h"
#include "platform/auto_reset_event.h"

#include <QString>

namespace tollivar::fetch {

/// What came of asking a page for its title.
struct FetchedTitle {
    StepResult result = StepResult::Failed;
    QString title{}; ///< empty when the page has none
};

/// Reads a page until its title is complete.
///
/// Threads: the worker's; a stop ends it within milliseconds.
/// Errors:  Failed when the page cannot be fetched, or answers with another status than 200;
///          Stopped. A page without a title is Done, with an empty one.
[[nodiscard]] FetchedTitle fetchTitle(const QString &address, platform::AutoResetEvent &stop);

} // namespace tollivar::fetch
