#pragma once

#include "companions/transvert/converter_arguments.h"

#include <functional>

namespace tollivar::transvert {

/// Takes one line of output.
using LineWriter = std::function<void(const QByteArray &line)>;

/// Turns one line of ffmpeg's into the converter's own: progress as "time=3.20 bitrate=…"; empty for
/// what nobody needs.
[[nodiscard]] QByteArray translatedLine(const QByteArray &line);

/// Runs ffmpeg for a request and returns the exit status: ffmpeg's own, 1 when it is not there. The
/// output is written under a temporary name beside its own and renamed at success.
[[nodiscard]] int runConverter(const ConverterRequest &request, const LineWriter &write);

} // namespace tollivar::transvert
