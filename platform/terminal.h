#pragma once

namespace tollivar::platform {

/// What standard error is connected to.
///
/// Threads: any.
/// True when a person sees it.
[[nodiscard]] bool errorIsTerminal();
/// Its width in characters; 80 when it cannot be told.
[[nodiscard]] int errorTerminalColumns();

} // namespace tollivar::platform
