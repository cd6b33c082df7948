#pragma once

#include <QString>

#include <optional>

namespace tollivar::fetch {

/// Addresses of pages, and of the video-sharing site's watch pages. Pure functions.

/// The address that makes the video-sharing site deliver the chosen quality (0 to 6, see
/// `TaskInfo::nModeHigh`); addresses of other sites come back unchanged.
[[nodiscard]] QString addressForParser(const QString &address, int quality);

/// Whether the address is that of a stream: it begins with rtmp:// or one of its kinds.
[[nodiscard]] bool isStreamAddress(const QString &address);

/// "http://" in front of an address that begins with neither http:// nor https:// and is none of a
/// stream.
[[nodiscard]] QString ensureScheme(const QString &address);

/// What follows the watch-page prefix, parameters included; nothing for any other address, and for
/// a watch page without an id.
[[nodiscard]] std::optional<QString> watchPageId(const QString &address);

/// What a page's file is called as long as the page's title is not known: the id of a watch page,
/// else the end of the address. As it stands there: no name for a file before it is cleaned.
[[nodiscard]] QString nameBeforeTitle(const QString &address);

} // namespace tollivar::fetch
