#pragma once

#include "companions/capture/media_found.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace tollivar::probe {

/// A page as a server sent it.
struct StaticPage {
    QByteArray bytes;
    QString address;        ///< for relative addresses
    QByteArray contentType; ///< of the answer; may name the character set
};

/// The media that a page's text names: media elements, player metadata, flash embeds and their
/// variables, links to media files. Best first, each once; what the page itself plays comes before
/// what it merely links to. A stream's list or one part of it is none of them. Pure; takes time in
/// proportion to the page.
[[nodiscard]] std::vector<capture::MediaFound> readStaticPage(const StaticPage &page,
                                                              capture::MediaPreference preference);

} // namespace tollivar::probe
