#pragma once

#include "app/cli/cli_arguments.h"

#include <QString>

namespace tollivar::app {

/// The commands that work on the stored tasks; each returns the exit status.
///
/// Threads: the main thread, with a QCoreApplication whose loop they run.

/// Hands the addresses to a running program, or downloads them here and waits.
[[nodiscard]] int runDownload(const CliDownload &download, const QString &callerDirectory);
/// Starts every task that is not completed and waits for all.
[[nodiscard]] int runStored(const CliRun &run);
[[nodiscard]] int runRemove(const CliRemove &remove);

} // namespace tollivar::app
