#pragma once

#include "companions/capture/media_found.h"

#include <QByteArray>

#include <vector>

namespace tollivar::capture {

/// The media as the key/value records that Tollivar reads (docs/formats/parser-answer.md), in
/// UTF-8, each ended by an empty line. A value is one line whatever it held before.
[[nodiscard]] QByteArray writeAnswer(const std::vector<MediaFound> &media);

} // namespace tollivar::capture
