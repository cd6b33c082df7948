#pragma once

#include "platform/result.h"

#include <QString>

namespace tollivar::capture {

/// A new empty folder for one browser's profile and everything else that it writes. The browser's
/// guardian removes it; folders that no living process holds are removed here on the way.
///
/// Errors: AskUser when no folder can be made.
[[nodiscard]] platform::Result<QString> makeProfileFolder();

} // namespace tollivar::capture
