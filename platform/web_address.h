#pragma once

#include <QString>

namespace tollivar::platform {

/// In UTF-16 units. Servers refuse longer ones, and nobody needs them for a file.
inline constexpr qsizetype kMaximumWebAddress = 16'384;

/// True when the text is the whole address of something on the web: http or https, and a host.
/// Browsers, desktops and helpers open much else, files and programs of this machine among it, so
/// nothing that comes from a page, a person or another program reaches one of them without this
/// question. What browsers write as it stands (blanks, bars, braces, lone percent signs) passes;
/// control characters, of which a line end would begin a new record or header, never do.
///
/// Threads: any.
[[nodiscard]] bool isWebAddress(const QString &text);

} // namespace tollivar::platform
