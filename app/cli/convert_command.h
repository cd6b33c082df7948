#pragma once

#include "app/cli/cli_arguments.h"
#include "convert/profile_table.h"

namespace tollivar::app {

/// The one profile that a person means by the beginning of its name.
/// Errors: AskUser when no profile begins so, or several do.
[[nodiscard]] platform::Result<QString> meantProfile(const convert::ProfileTable &table,
                                                     const QString &text);

/// Converts a file beside itself and tells of it as of a task. Gives the exit status.
///
/// Threads: the main thread, whose event loop runs meanwhile.
[[nodiscard]] int runConvert(const CliConvert &convert, const QString &callerDirectory);

} // namespace tollivar::app
