#include "fetch/speed_meter.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tollivar::fetch {

float percentHundredths(std::uint64_t done, std::uint64_t whole)
{
    constexpr double kAll = 10'000.0;
    if (whole == 0) {
        return static_cast<float>(kAll);
    }
    return static_cast<float>(static_cast<double>(std::min(done, whole)) * kAll /
                              static_cast<double>(whole));
}

double averageSpeed(std::uint64_t done, std::chrono::milliseconds elapsed)
{
    const auto seconds = elapsed.count() / 1000;
    return seconds > 0 ? static_cast<double>(done) / static_cast<double>(seconds) : 0.0;
}

std::int32_t secondsLeft(std::uint64_t done, std::uint64_t whole, double bytesPerSecond)
{
    if (bytesPerSecond <= 0) {
        return tasks::kUnknownSecondsLeft;
    }
    if (done >= whole) {
        return 0;
    }
    const double seconds = std::round(static_cast<double>(whole - done) / bytesPerSecond);
    constexpr double kLongest = std::numeric_limits<std::int32_t>::max();
    return seconds < kLongest ? static_cast<std::int32_t>(seconds) : tasks::kUnknownSecondsLeft;
}

} // namespace tollivar::fetch
