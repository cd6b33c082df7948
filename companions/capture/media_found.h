#pragma once

#include "platform/auto_reset_event.h"
#include "platform/result.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace tollivar::capture {

/// One medium that a page offers, with what a server has to be told to hand it out.
struct MediaFound {
    QString address;                      ///< to ask for it
    QString title;                        ///< the page's
    QString mediaType;                    ///< "video/mp4"; empty when nobody said
    QString extension;                    ///< with its dot; empty when unknown
    std::optional<std::int64_t> length{}; ///< bytes
    QString cookies{};
    QString agent{};
    QString referer{};
    QString page{};     ///< its address, where a person chose the page by browsing
    QString location{}; ///< where it lay in the end; empty when no redirect led there
};

/// Which media come first.
enum class MediaPreference { Video, Flash };

struct FindRequest {
    QString address; ///< http or https
    MediaPreference preference = MediaPreference::Video;
    std::chrono::steady_clock::time_point deadline;
};

/// One way to find the media of a page.
///
/// Threads: find() runs on the caller's thread and blocks until it has an answer, the deadline has
///          passed or the stop event is set.
class MediaFinder {
public:
    virtual ~MediaFinder() = default;

    /// The media, best first; none when the page has none.
    /// Errors: TryAgain when it could not be told, because something it needs is missing or failed.
    [[nodiscard]] virtual platform::Result<std::vector<MediaFound>>
    find(const FindRequest &request, platform::AutoResetEvent &stop) = 0;
};

} // namespace tollivar::capture
