#pragma once

#include "companions/capture/media_found.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace tollivar::probe {

/// The media that a page's text names: media elements, player metadata, links to media files and
/// flash embeds, best first, each once. Pure; takes time in proportion to the page.
///
/// `address` is the page's own, for relative addresses.
[[nodiscard]] std::vector<capture::MediaFound>
readStaticPage(const QByteArray &page, const QString &address, capture::MediaPreference preference);

} // namespace tollivar::probe
