#pragma once

namespace tollivar::platform {

/// Whether windows may be partly transparent on the person's display: asked of the display itself,
/// a round trip of a millisecond. True where there is no question of it.
///
/// Threads: any.
[[nodiscard]] bool isDisplayComposited();

} // namespace tollivar::platform
