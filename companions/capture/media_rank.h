#pragma once

#include "companions/capture/media_found.h"
#include "companions/capture/media_kind.h"
#include "companions/capture/network_watch.h"
#include "companions/capture/page_report.h"

#include <QString>

#include <vector>

namespace tollivar::capture {

/// Everything that a page showed of its media.
struct PageMedia {
    std::vector<WatchedRequest> answered;
    std::vector<PlayedMedium> played;
    /// What the page only points to, in its order: nobody has asked for these yet.
    std::vector<WatchedRequest> offered;
    QString title;
};

/// The media of a page, best first, each once. What was fetched comes before what is only offered,
/// videos before sounds (flash films before both when they are preferred), what the page plays
/// before what it plays not, large on the page before small, long files before short ones. Sounds
/// too short to be the point of a page come last.
[[nodiscard]] std::vector<MediaFound> rankMedia(const PageMedia &page, MediaPreference preference);

/// True when the page fetched what a person came for, so that waiting for something better is idle.
/// No browser fetches flash films: of these it is enough that the page has one.
[[nodiscard]] bool isSatisfying(const PageMedia &page, MediaPreference preference);

} // namespace tollivar::capture
