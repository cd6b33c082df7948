#pragma once

#include <QDateTime>

#include <chrono>

namespace tollivar::platform {

/// Time as a collaborator, so that a test can set it.
///
/// Threads: all functions may be called from any thread.
class Clock {
public:
    virtual ~Clock() = default;
    /// Steady time for intervals; its zero point means nothing.
    [[nodiscard]] virtual std::chrono::milliseconds steadyNow() const = 0;
    /// The wall clock in local time.
    [[nodiscard]] virtual QDateTime wallNow() const = 0;
};

/// The system's own clock; lives as long as the process.
[[nodiscard]] const Clock &systemClock();

} // namespace tollivar::platform
