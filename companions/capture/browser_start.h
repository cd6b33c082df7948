#pragma once

#include "platform/guarded_child.h"

namespace tollivar::capture {

/// Whether a person sees the browser.
enum class BrowserFace {
    Hidden, ///< no window, no sound, media play by themselves
    Shown,  ///< an ordinary browser, but that it has no window before one is asked for
};

/// The installed browser, with a profile of its own that is gone afterwards, to be driven over its
/// DevTools pipe.
///
/// Errors: AskUser when none is installed or it has no place to write to, TryAgain when it could not
///         be started now.
[[nodiscard]] platform::Result<std::unique_ptr<platform::GuardedChild>>
startBrowser(BrowserFace face);

} // namespace tollivar::capture
