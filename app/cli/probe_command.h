#pragma once

#include "app/cli/cli_arguments.h"

namespace tollivar::app {

/// Finds the media of a page and shows them; returns the exit status.
[[nodiscard]] int runProbe(const CliProbe &probe);

} // namespace tollivar::app
