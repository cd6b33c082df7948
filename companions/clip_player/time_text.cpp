#include "companions/clip_player/time_text.h"

#include <cmath>

namespace tollivar::player {

using namespace Qt::StringLiterals;

QString timeText(std::optional<double> seconds)
{
    constexpr double kLongest = 999.0 * 3'600;
    constexpr int kMinute = 60;
    if (!seconds || !std::isfinite(*seconds) || *seconds > kLongest) {
        return u"-:--"_s;
    }
    const int whole = *seconds > 0 ? static_cast<int>(*seconds) : 0;
    const QString second = u"%1"_s.arg(whole % kMinute, 2, 10, QChar(u'0'));
    const int minutes = whole / kMinute;
    if (minutes < kMinute) {
        return u"%1:%2"_s.arg(minutes).arg(second);
    }
    return u"%1:%2:%3"_s.arg(minutes / kMinute)
        .arg(minutes % kMinute, 2, 10, QChar(u'0'))
        .arg(second);
}

} // namespace tollivar::player
