#pragma once

#include <QDateTime>

#include <chrono>
#include <optional>

namespace tollivar::update {

/// When the program asks for updates by itself; the stored setting, never renumber.
enum class UpdateMode : int { OnlyWhenAsked = 0, EveryStart = 1, Weekly = 2, Never = 3 };

/// Whether a start is to check. A stored number without a name never checks; a last check that lies
/// in the future counts as long ago.
[[nodiscard]] bool isCheckDue(int mode, const QDateTime &lastCheck, const QDateTime &now);

/// Counts the attempts after a check that failed.
class RetrySchedule {
public:
    /// How long to wait before the next attempt; nothing when there is none left.
    [[nodiscard]] std::optional<std::chrono::minutes> next();
    void reset() { m_attemptsLeft = kAttempts; }

private:
    static constexpr int kAttempts = 5;
    int m_attemptsLeft = kAttempts;
};

} // namespace tollivar::update
