#include "companions/capture/media_rank.h"

#include "fetch/text/media_type.h"

#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <array>
#include <set>

namespace tollivar::capture {

namespace {

/// Below this a sound is a click or a jingle.
constexpr std::int64_t kShortSound = 100'000;

QString endingOf(const QString &address)
{
    return QFileInfo(QUrl(address).path()).suffix().toLower();
}

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
    constexpr std::array<QStringView, 7> kAudio = {u"mp3", u"m4a",  u"ogg", u"wav",
                                                   u"aac", u"flac", u"wma"};
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

struct Candidate {
    WatchedRequest request;
    MediaKind kind = MediaKind::None;
    bool isPlaying = false;
};

int rankOf(const Candidate &candidate, MediaPreference preference)
{
    const bool isShort = candidate.kind == MediaKind::Audio &&
                         candidate.request.length.value_or(kShortSound) < kShortSound;
    if (isShort) {
        return static_cast<int>(MediaKind::None);
    }
    if (preference == MediaPreference::Flash && candidate.kind == MediaKind::Flash) {
        return -1;
    }
    return static_cast<int>(candidate.kind);
}

bool isBetter(const Candidate &left, const Candidate &right, MediaPreference preference)
{
    const int leftRank = rankOf(left, preference);
    const int rightRank = rankOf(right, preference);
    if (leftRank != rightRank) {
        return leftRank < rightRank;
    }
    if (left.isPlaying != right.isPlaying) {
        return left.isPlaying;
    }
    return left.request.length.value_or(0) > right.request.length.value_or(0);
}

QString sentHeader(const WatchedRequest &request, const QString &name)
{
    const auto found = request.sentHeaders.find(name);
    return found == request.sentHeaders.end() ? QString() : found->second;
}

MediaFound asMedium(const WatchedRequest &request, const QString &title)
{
    const QString byType = fetch::typeForMedia(request.mediaType.toLatin1());
    const QString ending = endingOf(request.address);
    const bool isRedirected = request.firstAddress != request.address;
    return {.address = isRedirected ? request.firstAddress : request.address,
            .title = title,
            .mediaType = request.mediaType,
            .extension = byType.isEmpty() && !ending.isEmpty() ? QLatin1Char('.') + ending : byType,
            .length = request.length,
            .cookies = sentHeader(request, QStringLiteral("cookie")),
            .agent = sentHeader(request, QStringLiteral("user-agent")),
            .referer = sentHeader(request, QStringLiteral("referer")),
            .location = isRedirected ? request.address : QString()};
}

} // namespace

MediaKind kindOf(const QString &mediaType, const QString &address)
{
    const QString type = mediaType.section(u';', 0, 0).trimmed().toLower();
    if (type == u"video/mp2t" || type == u"video/iso.segment") {
        return MediaKind::Segment;
    }
    if (type == u"application/vnd.apple.mpegurl" || type == u"application/x-mpegurl" ||
        type == u"audio/mpegurl" || type == u"application/dash+xml") {
        return MediaKind::Playlist;
    }
    if (type == u"application/x-shockwave-flash") {
        return MediaKind::Flash;
    }
    const MediaKind byEnding = kindByEnding(endingOf(address));
    if (type.startsWith(u"video/")) {
        return byEnding == MediaKind::Segment ? byEnding : MediaKind::Video;
    }
    if (type.startsWith(u"audio/")) {
        return MediaKind::Audio;
    }
    const bool saysNothing = type.isEmpty() || type == u"application/octet-stream" ||
                             type == u"binary/octet-stream" || type == u"text/plain";
    return saysNothing ? byEnding : MediaKind::None;
}

std::vector<MediaFound> rankMedia(const std::vector<WatchedRequest> &requests,
                                  const QStringList &playing, const QString &title,
                                  MediaPreference preference)
{
    std::vector<Candidate> candidates;
    std::set<QString> known;
    for (const WatchedRequest &request : requests) {
        const bool isThere = request.status == 200 || request.status == 206;
        const bool isFetched =
            request.address.startsWith(u"http://") || request.address.startsWith(u"https://");
        const MediaKind kind = kindOf(request.mediaType, request.address);
        if (isThere && isFetched && kind != MediaKind::None &&
            known.insert(request.address).second) {
            candidates.push_back(
                {request, kind,
                 playing.contains(request.address) || playing.contains(request.firstAddress)});
        }
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [preference](const Candidate &left, const Candidate &right) {
                         return isBetter(left, right, preference);
                     });
    std::vector<MediaFound> media;
    for (const Candidate &candidate : candidates) {
        media.push_back(asMedium(candidate.request, title));
    }
    return media;
}

bool isSatisfying(const std::vector<MediaFound> &media)
{
    if (media.empty()) {
        return false;
    }
    const MediaKind kind = kindOf(media.front().mediaType, media.front().address);
    return kind == MediaKind::Video || kind == MediaKind::Flash;
}

} // namespace tollivar::capture
