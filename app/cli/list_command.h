#pragma once

#include "app/cli/cli_arguments.h"

namespace tollivar::app {

/// Shows the stored tasks, also while a program works with them; returns the exit status.
[[nodiscard]] int runList(const CliList &list);

} // namespace tollivar::app
