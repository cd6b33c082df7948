#pragma once

#include <cstdint>

namespace tollivar::tasks {

/// `TaskInfo::nModeLow`. Stored, never renumber.
enum class DownloadMethod : std::int32_t {
    Video = 0,     ///< the page's video
    VideoSite = 1, ///< a watch page of the video-sharing site
    Flash = 2,     ///< the page's flash file
    Direct = 6,    ///< the media address is known; no page is resolved
};

/// Both halves of the stored `nDownloadMode`; either may hold a value that has no name.
struct DownloadMode {
    std::int32_t low = 0;  ///< method, the last decimal digit
    std::int32_t high = 0; ///< quality 0 to 6, the tens and above

    bool operator==(const DownloadMode &) const = default;
};

[[nodiscard]] constexpr std::int32_t packDownloadMode(DownloadMode mode)
{
    return mode.high * 10 + mode.low;
}

[[nodiscard]] constexpr DownloadMode unpackDownloadMode(std::int32_t stored)
{
    return {.low = stored % 10, .high = stored / 10};
}

} // namespace tollivar::tasks
