#pragma once

#include "companions/capture/media_found.h"

namespace tollivar::probe {

/// Reads the page's text without running it: where there is no browser, and as a second try.
class StaticFinder final : public capture::MediaFinder {
public:
    [[nodiscard]] platform::Result<std::vector<capture::MediaFound>>
    find(const capture::FindRequest &request, platform::AutoResetEvent &stop) override;
};

} // namespace tollivar::probe
