#include "companions/capture/media_kind.h"

#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <array>

namespace tollivar::capture {

namespace {

template<std::size_t Count>
bool isOneOf(const QString &text, const std::array<QStringView, Count> &known)
{
    return std::find(known.begin(), known.end(), text) != known.end();
}

MediaKind kindByEnding(const QString &ending)
{
    constexpr std::array<QStringView, 13> kVideo = {u"mp4",  u"webm", u"flv", u"mkv", u"mov",
                                                    u"m4v",  u"ogv",  u"avi", u"wmv", u"mpg",
                                                    u"mpeg", u"3gp",  u"asf"};
    constexpr std::array<QStringView, 8> kAudio = {u"mp3", u"m4a", u"ogg",  u"oga",
                                                   u"wav", u"aac", u"flac", u"wma"};
    constexpr std::array<QStringView, 2> kSegment = {u"ts", u"m4s"};
    constexpr std::array<QStringView, 2> kPlaylist = {u"m3u8", u"mpd"};
    if (isOneOf(ending, kVideo)) {
        return MediaKind::Video;
    }
    if (isOneOf(ending, kPlaylist)) {
        return MediaKind::Playlist;
    }
    if (isOneOf(ending, kSegment)) {
        return MediaKind::Segment;
    }
    if (isOneOf(ending, kAudio)) {
        return MediaKind::Audio;
    }
    return ending == u"swf" ? MediaKind::Flash : MediaKind::None;
}

} // namespace

QString endingOf(const QString &address)
{
    return QFileInfo(QUrl(address).path()).suffix().toLower();
}

MediaKind kindOf(const QString &mediaType, const QString &address)
{
    constexpr std::array<QStringView, 5> kPlaylists = {u"application/vnd.apple.mpegurl",
                                                       u"application/x-mpegurl", u"audio/mpegurl",
                                                       u"audio/x-mpegurl", u"application/dash+xml"};
    constexpr std::array<QStringView, 2> kSegments = {u"video/mp2t", u"video/iso.segment"};
    // What servers say of a file whose kind they were not told.
    constexpr std::array<QStringView, 5> kSaysNothing = {
        u"", u"application/octet-stream", u"binary/octet-stream", u"application/force-download",
        u"text/plain"};
    const QString type = mediaType.section(u';', 0, 0).trimmed().toLower();
    if (isOneOf(type, kPlaylists)) {
        return MediaKind::Playlist;
    }
    if (isOneOf(type, kSegments)) {
        return MediaKind::Segment;
    }
    if (type == u"application/x-shockwave-flash" || type == u"application/vnd.adobe.flash.movie") {
        return MediaKind::Flash;
    }
    const MediaKind byEnding = kindByEnding(endingOf(address));
    if (type.startsWith(u"video/")) {
        return byEnding == MediaKind::Segment ? byEnding : MediaKind::Video;
    }
    if (type.startsWith(u"audio/")) {
        return byEnding == MediaKind::Segment ? byEnding : MediaKind::Audio;
    }
    if (type == u"application/mp4" || type == u"application/ogg") {
        return byEnding == MediaKind::None ? MediaKind::Video : byEnding;
    }
    return isOneOf(type, kSaysNothing) ? byEnding : MediaKind::None;
}

} // namespace tollivar::capture
