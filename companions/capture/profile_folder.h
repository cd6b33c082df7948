#pragma once

#include "platform/result.h"

#include <QString>

namespace tollivar::capture {

/// Where one browser's profile and everything else that it writes shall lie: a path that is free and
/// cannot be guessed. The browser's guardian makes the folder and removes it. Folders of earlier
/// starts that no living guardian holds are removed here on the way.
///
/// Errors: AskUser when no folder can be made.
[[nodiscard]] platform::Result<QString> newProfilePath();

} // namespace tollivar::capture
