#pragma once

#include "app/cli/cli_arguments.h"
#include "convert/profile_table.h"

#include <QByteArray>

namespace tollivar::app {

/// Shows the conversion profiles; returns the exit status. Needs no data directory.
[[nodiscard]] int runProfiles(const CliProfiles &profiles);

/// An array of profiles in the table's order, each with name, type (empty: no conversion),
/// parameters and its eight lists of values: every value once, the default first.
[[nodiscard]] QByteArray profilesJson(const convert::ProfileTable &table);

} // namespace tollivar::app
