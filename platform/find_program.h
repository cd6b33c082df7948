#pragma once

#include <QString>

#include <optional>

namespace tollivar::platform {

/// The absolute path of a program named as in a command line, such as ".\PageProbe.exe": "\" is
/// taken as "/", ".exe" is dropped when the plain name is there. Looks in the program directory,
/// the current directory, then PATH; a name with a separator is not looked up in PATH.
///
/// Threads: any.
[[nodiscard]] std::optional<QString> findProgram(const QString &name);

} // namespace tollivar::platform
