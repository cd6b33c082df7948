#pragma once

#include <QDateTime>

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>

namespace tollivar::update {

/// When the program asks for updates by itself; the stored setting, never renumber.
enum class UpdateMode : int { OnlyWhenAsked = 0, EveryStart = 1, Weekly = 2, Never = 3 };

/// Whether that mode ever checks without being asked. A stored number without a name never does.
[[nodiscard]] bool checksByItself(int mode);

/// Whether a start is to check. A last check that lies in the future counts as long ago.
[[nodiscard]] bool isCheckDue(int mode, const QDateTime &lastCheck, const QDateTime &now);

/// How long to wait after each failed check in a row before the next attempt.
using RetryPauses = std::array<std::chrono::milliseconds, 5>;
inline constexpr RetryPauses kRetryPauses{std::chrono::minutes(5), std::chrono::minutes(10),
                                          std::chrono::minutes(20), std::chrono::minutes(30),
                                          std::chrono::minutes(30)};

/// Counts the attempts after a check that failed.
class RetrySchedule {
public:
    explicit RetrySchedule(const RetryPauses &pauses) : m_pauses(pauses) {}

    /// How long to wait before the next attempt; nothing when there is none left.
    [[nodiscard]] std::optional<std::chrono::milliseconds> next();
    void reset() { m_taken = 0; }

private:
    RetryPauses m_pauses;
    std::size_t m_taken = 0;
};

} // namespace tollivar::update
