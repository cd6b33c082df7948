#pragma once

#include "platform/clock.h"

namespace tollivar::test {

/// Time that stands still until the test moves it.
class ManualClock final : public platform::Clock {
public:
    [[nodiscard]] std::chrono::milliseconds steadyNow() const override { return m_now; }
    [[nodiscard]] QDateTime wallNow() const override { return {}; }
    void advance(std::chrono::milliseconds step) { m_now += step; }

private:
    std::chrono::milliseconds m_now{0};
};

} // namespace tollivar::test
