#pragma once

#include "companions/capture/media_found.h"

namespace tollivar::probe {

/// Asks an installed yt-dlp, when one of its own site extractors knows the address; its generic
/// extractor is left out, for a page it does not know is what the browser is for.
///
/// Owns:    during find(): the program and a folder for what it writes, of which nothing is left
///          afterwards, even when we are killed.
class ExtractorFinder final : public capture::MediaFinder {
public:
    /// Errors: TryAgain when it is not installed, or not done in time.
    [[nodiscard]] platform::Result<std::vector<capture::MediaFound>>
    find(const capture::FindRequest &request, platform::AutoResetEvent &stop) override;
};

} // namespace tollivar::probe
