#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>

namespace tollivar::platform {

/// Major, minor, build, revision.
using FlashVersion = std::array<std::uint32_t, 4>;

/// The version of the flash player among the system's browser plug-ins; four zeros when there is
/// none. Reads a file of a few megabytes.
///
/// Threads: any.
[[nodiscard]] FlashVersion flashPlayerVersion();

/// The same, looked for in these folders.
[[nodiscard]] FlashVersion flashPlayerVersion(const QStringList &folders);

/// Four numbers with commas or dots between them; four zeros for anything else.
[[nodiscard]] FlashVersion readFlashVersion(QStringView text);

} // namespace tollivar::platform
