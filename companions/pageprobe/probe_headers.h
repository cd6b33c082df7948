#pragma once

#include <QByteArray>

namespace tollivar::probe {

/// What the finders without a browser call themselves; servers turn away what they do not know.
inline constexpr const char *kProbeAgent =
    "Mozilla/5.0 (X11; Linux x86_64) AppleWebKit/537.36 (KHTML, like Gecko) Chrome/120.0.0.0 "
    "Safari/537.36";

/// The header lines of their requests.
[[nodiscard]] inline QByteArray probeHeaders()
{
    return QByteArray("Accept: */*\r\nUser-Agent: ") + kProbeAgent + "\r\n";
}

} // namespace tollivar::probe
