#pragma once

#include "companions/capture/media_found.h"

namespace tollivar::probe {

/// Reads the page's text without running it: where there is no browser, and as a second try. Of a
/// page that is very long, or breaks off, the beginning is read.
class StaticFinder final : public capture::MediaFinder {
public:
    /// Errors: TryAgain when the page does not answer in some seconds, or the reading was stopped.
    [[nodiscard]] platform::Result<std::vector<capture::MediaFound>>
    find(const capture::FindRequest &request, platform::AutoResetEvent &stop) override;
};

} // namespace tollivar::probe
