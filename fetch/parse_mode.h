#pragma once

#include <QStringView>

#include <array>

namespace tollivar::fetch {

/// How the companions that read pages are asked, the first try and the second: an old browser engine
/// (below 7; -1 is unknown) in the old way first.
[[nodiscard]] constexpr std::array<QStringView, 2> parseModes(int browserVersion)
{
    constexpr int kFirstNewBrowser = 7;
    constexpr QStringView kOld = u"PARSE_MODE_IE6";
    constexpr QStringView kNew = u"PARSE_MODE_IE7";
    const bool isNew = browserVersion >= kFirstNewBrowser || browserVersion == -1;
    return isNew ? std::array{kNew, kOld} : std::array{kOld, kNew};
}

} // namespace tollivar::fetch
