#pragma once

#include "platform/result.h"

#include <QString>

namespace tollivar::DuiLib {

/// What a packed skin may hold at most.
inline constexpr int kMaximumSkinFiles = 1'000;
inline constexpr qint64 kMaximumUnpackedFile = 8LL * 1024 * 1024;  ///< bytes
inline constexpr qint64 kMaximumUnpackedSkin = 32LL * 1024 * 1024; ///< bytes

/// Unpacks a zip archive into an empty folder, which nothing in it can leave.
/// Errors: AskUser, naming the entry, for an archive that is none, is too large, or holds a link or
///         a name that leads elsewhere. What was unpacked until then stays for the caller to remove.
[[nodiscard]] platform::Result<void> unpackSkin(const QString &archive, const QString &folder);

} // namespace tollivar::DuiLib
