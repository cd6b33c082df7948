#pragma once

#include "companions/capture/media_found.h"
#include "companions/capture/network_watch.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace tollivar::capture {

/// What kind of file an answer is, from best to worst for a person who wants the video.
enum class MediaKind { Video, Flash, Playlist, Audio, Segment, None };

/// By media type, and by the address where the type says nothing.
[[nodiscard]] MediaKind kindOf(const QString &mediaType, const QString &address);

/// The media among the requests of a page, best first, each once: what the page plays, then by
/// kind and size. Sounds too short to be the point of a page come only when there is nothing else.
///
/// `playing` are the addresses that the page's media elements play.
[[nodiscard]] std::vector<MediaFound> rankMedia(const std::vector<WatchedRequest> &requests,
                                                const QStringList &playing, const QString &title,
                                                MediaPreference preference);

/// True when the best of them is what a person came for, so that waiting for more is idle.
[[nodiscard]] bool isSatisfying(const std::vector<MediaFound> &media);

} // namespace tollivar::capture
