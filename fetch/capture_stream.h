#pragma once

#include "platform/auto_reset_event.h"

#include <QString>

#include <functional>

namespace tollivar::fetch {

/// The command line that has the capture browser write what a person chooses to its output.
[[nodiscard]] QString captureBrowserCommandLine(int browserVersion);

/// Runs the capture browser and hands on each record, as text, as it comes.
///
/// Threads: any, one that may wait: returns when the browser has ended, could not be started, or
///          `stop` is set, which kills it at once. `onRecord` is called there.
void followCaptureBrowser(const QString &commandLine, platform::AutoResetEvent &stop,
                          const std::function<void(const QString &record)> &onRecord);

} // namespace tollivar::fetch
