#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace tollivar::convert {

/// What the converter prints, read. Pure; any text is accepted.

/// The length that the output tells, such as "00:03:25"; nothing when it tells none.
[[nodiscard]] std::optional<QString> durationIn(QStringView output);

/// Seconds of a text of exactly the form HH:MM:SS; 0 for any other.
[[nodiscard]] int secondsOf(QStringView duration);

/// Follows the converter's "time=" marks through its growing output.
class ProgressReader {
public:
    explicit ProgressReader(int secondsToConvert) : m_seconds(secondsToConvert) {}

    /// The percentage after more output, 0 to 99; nothing when it brings no news.
    [[nodiscard]] std::optional<int> take(const QString &chunk);

private:
    int m_seconds;
    QString m_rest; ///< from where the next search begins
};

} // namespace tollivar::convert
