#pragma once

#include <QString>

#include <optional>

namespace tollivar::player {

/// A time as "0:07", "12:05" or "1:02:03", whole seconds rounded down; "-:--" when unknown.
[[nodiscard]] QString timeText(std::optional<double> seconds);

} // namespace tollivar::player
