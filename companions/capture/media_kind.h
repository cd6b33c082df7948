#pragma once

#include <QString>

namespace tollivar::capture {

/// What an answer is to a person who wants the video.
enum class MediaKind {
    Video,
    Flash, ///< a flash film or game
    Audio,
    Playlist, ///< the list of a stream's parts
    Segment,  ///< one part of a stream
    None,
};

/// By media type, and by the address where the type says nothing.
[[nodiscard]] MediaKind kindOf(const QString &mediaType, const QString &address);

/// True for what one request brings whole: not a stream's list, nor one part of it.
[[nodiscard]] constexpr bool isMedium(MediaKind kind)
{
    return kind == MediaKind::Video || kind == MediaKind::Flash || kind == MediaKind::Audio;
}

/// The ending of the file in an address, lower case and without its dot; empty when it has none.
[[nodiscard]] QString endingOf(const QString &address);

} // namespace tollivar::capture
