#pragma once

#include <QPoint>

#include <cstdint>
#include <optional>

namespace tollivar::platform {

/// Where a native window's upper left corner stands, in pixels of the display: asked of the display
/// itself, a round trip of a millisecond. Nothing where the display does not tell.
///
/// Threads: any.
[[nodiscard]] std::optional<QPoint> windowPlace(std::uint32_t window);

} // namespace tollivar::platform
