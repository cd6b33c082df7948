#pragma once

#include "companions/capture/media_found.h"

namespace tollivar::probe {

/// An address that answers with a media type is its own medium.
class DirectFinder final : public capture::MediaFinder {
public:
    /// Errors: none; an address that does not answer in some seconds has no media.
    [[nodiscard]] platform::Result<std::vector<capture::MediaFound>>
    find(const capture::FindRequest &request, platform::AutoResetEvent &stop) override;
};

} // namespace tollivar::probe
