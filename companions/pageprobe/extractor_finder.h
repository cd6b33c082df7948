#pragma once

#include "companions/capture/media_found.h"

#include <QByteArray>

namespace tollivar::probe {

/// Asks an installed yt-dlp, when one of its own site extractors knows the address.
class ExtractorFinder final : public capture::MediaFinder {
public:
    /// Errors: TryAgain when it is not installed.
    [[nodiscard]] platform::Result<std::vector<capture::MediaFound>>
    find(const capture::FindRequest &request, platform::AutoResetEvent &stop) override;
};

/// The medium in the extractor's JSON; none when it is not fetched over HTTP, was found by the
/// generic extractor, or the text is no such JSON.
[[nodiscard]] std::vector<capture::MediaFound> readExtractorAnswer(const QByteArray &json,
                                                                   const QString &address);

} // namespace tollivar::probe
