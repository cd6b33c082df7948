#pragma once

#include "update/update_checker.h"

namespace tollivar::app {

/// Fetches the update server's answer: status 200 and at most the size that is read of it.
[[nodiscard]] update::GetResult downloadUpdateInfo(const QString &address, const QString &path,
                                                   platform::AutoResetEvent &stop);

} // namespace tollivar::app
