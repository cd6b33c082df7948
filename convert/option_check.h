#pragma once

#include "tasks/api/conversion_options.h"

namespace tollivar::convert {

/// False when no profile can have given these options: they come from a database that anybody can
/// have written, and end on the converter's command line and in a file's name. Pure.
[[nodiscard]] bool areOfAProfile(const tasks::ConversionOptions &options);

} // namespace tollivar::convert
