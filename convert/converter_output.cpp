#include "convert/converter_output.h"

#include <algorithm>

namespace tollivar::convert {

namespace {

constexpr QStringView kTimeMark = u"time=";
/// No mark and value is longer; what came before cannot hold the beginning of one.
constexpr qsizetype kLongestMark = 64;

int twoDigits(QStringView text, qsizetype place)
{
    return text.mid(place, 2).toInt();
}

} // namespace

std::optional<QString> durationIn(QStringView output)
{
    constexpr QStringView kMark = u"Duration:";
    const qsizetype mark = output.indexOf(kMark);
    if (mark < 0) {
        return std::nullopt;
    }
    const qsizetype start = mark + kMark.size();
    qsizetype end = output.indexOf(u'.', start);
    const qsizetype bitRate = output.indexOf(u"bitrate", start);
    if (end < 0 || (bitRate >= 0 && end > bitRate)) {
        end = output.indexOf(u',', start);
    }
    if (end < 0) {
        return std::nullopt;
    }
    return output.mid(start, end - start).trimmed().toString();
}

int secondsOf(QStringView duration)
{
    constexpr qsizetype kLength = 8;
    constexpr int kHour = 3'600;
    constexpr int kMinute = 60;
    if (duration.size() != kLength) {
        return 0;
    }
    for (qsizetype place = 0; place < kLength; ++place) {
        const bool isColon = place == 2 || place == 5;
        const char16_t character = duration[place].unicode();
        if (isColon ? character != u':' : character < u'0' || character > u'9') {
            return 0;
        }
    }
    return twoDigits(duration, 0) * kHour + twoDigits(duration, 3) * kMinute +
           twoDigits(duration, 6);
}

std::optional<int> ProgressReader::take(const QString &chunk)
{
    m_rest += chunk;
    const qsizetype mark = m_rest.lastIndexOf(kTimeMark);
    if (mark < 0) {
        m_rest = m_rest.right(kLongestMark);
        return std::nullopt;
    }
    const qsizetype start = mark + kTimeMark.size();
    qsizetype end = m_rest.indexOf(u'.', start);
    if (end < 0) {
        end = m_rest.indexOf(u' ', start);
    }
    if (end < 0) {
        m_rest = m_rest.mid(mark).right(kLongestMark);
        return std::nullopt;
    }
    const double time = QStringView(m_rest).mid(start, end - start).trimmed().toDouble();
    m_rest = m_rest.mid(end).right(kLongestMark);
    if (m_seconds <= 0) {
        return std::nullopt;
    }
    constexpr double kHundred = 100;
    double fraction = time / m_seconds;
    if (!(fraction * kHundred <= 2 * kHundred)) {
        fraction = 0;
    } else if (fraction * kHundred > kHundred) {
        fraction = 0.99;
    }
    return std::max(0, static_cast<int>(fraction * kHundred));
}

} // namespace tollivar::convert
