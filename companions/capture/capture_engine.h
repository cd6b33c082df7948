#pragma once

#include "companions/capture/media_found.h"

namespace tollivar::capture {

/// Finds media by letting a real browser, without a window and with a profile of its own, load and
/// play the page, and by watching what it fetches, in frames and workers too.
///
/// Threads: as MediaFinder.
/// Owns:    during find(): the browser and its profile, of which nothing is left afterwards.
class CaptureEngine final : public MediaFinder {
public:
    [[nodiscard]] platform::Result<std::vector<MediaFound>>
    find(const FindRequest &request, platform::AutoResetEvent &stop) override;
};

} // namespace tollivar::capture
