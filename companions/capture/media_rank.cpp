#include "companions/capture/media_rank.h"

#include "fetch/text/media_type.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>

namespace tollivar::capture {

namespace {

/// Below this a sound is a click or a jingle.
constexpr std::int64_t kShortSound = 100'000;

/// What decides between two media; smaller is better.
struct Rank {
    int group = 0;
    bool isIdle = true; ///< the page does not play it
    int smallness = 0;  ///< on the page, in halvings, so that near-equal sizes count as equal
    std::int64_t shortness = 0;

    [[nodiscard]] auto tied() const { return std::tie(group, isIdle, smallness, shortness); }
};

struct Candidate {
    const WatchedRequest *request = nullptr;
    Rank rank;
};

int groupOf(const WatchedRequest &request, MediaKind kind, bool isOffered,
            MediaPreference preference)
{
    if (kind == MediaKind::Flash && preference == MediaPreference::Flash) {
        return 0;
    }
    if (kind == MediaKind::Audio && request.length.value_or(kShortSound) < kShortSound) {
        return 9;
    }
    const int behindFetched = isOffered ? 4 : 0;
    return behindFetched + (kind == MediaKind::Video ? 1 : kind == MediaKind::Flash ? 2 : 3);
}

Rank rankOf(const WatchedRequest &request, bool isOffered, const PageMedia &page,
            MediaPreference preference)
{
    const MediaKind kind = kindOf(request.mediaType, request.address);
    const auto played = std::find_if(
        page.played.begin(), page.played.end(), [&request](const PlayedMedium &medium) {
            return medium.address == request.address || medium.address == request.namedAddress;
        });
    const bool isPlayed = played != page.played.end();
    return {.group = groupOf(request, kind, isOffered, preference),
            .isIdle = !isPlayed,
            .smallness = isPlayed ? -static_cast<int>(std::log2(1 + played->area)) : 0,
            .shortness = -request.length.value_or(0)};
}

MediaFound asMedium(const WatchedRequest &request, const QString &title)
{
    const QString byType = fetch::typeForMedia(request.mediaType.toLatin1());
    const QString ending = endingOf(request.address);
    return {.address = request.address,
            .title = title,
            .mediaType = request.mediaType,
            .extension = byType.isEmpty() && !ending.isEmpty() ? QLatin1Char('.') + ending : byType,
            .length = request.length,
            .cookies = request.sent.cookies,
            .agent = request.sent.agent,
            .referer = request.sent.referer,
            .location = request.namedAddress == request.address ? QString() : request.address};
}

} // namespace

std::vector<MediaFound> rankMedia(const PageMedia &page, MediaPreference preference)
{
    std::vector<Candidate> candidates;
    std::set<QString> known;
    for (const auto *requests : {&page.answered, &page.offered}) {
        for (const WatchedRequest &request : *requests) {
            if (isMedium(kindOf(request.mediaType, request.address)) &&
                known.insert(request.address).second) {
                const bool isOffered = requests == &page.offered;
                candidates.push_back({&request, rankOf(request, isOffered, page, preference)});
            }
        }
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate &left, const Candidate &right) {
                         return left.rank.tied() < right.rank.tied();
                     });
    std::vector<MediaFound> media;
    media.reserve(candidates.size());
    for (const Candidate &candidate : candidates) {
        media.push_back(asMedium(*candidate.request, page.title));
    }
    return media;
}

bool isSatisfying(const PageMedia &page, MediaPreference preference)
{
    const auto holds = [](const std::vector<WatchedRequest> &requests, MediaKind kind) {
        return std::any_of(requests.begin(), requests.end(), [kind](const WatchedRequest &request) {
            return kindOf(request.mediaType, request.address) == kind;
        });
    };
    if (preference == MediaPreference::Flash) {
        return holds(page.answered, MediaKind::Flash) || holds(page.offered, MediaKind::Flash);
    }
    return holds(page.answered, MediaKind::Video);
}

} // namespace tollivar::capture
