#include "platform/clock.h"

namespace tollivar::platform {

namespace {

class SystemClock final : public Clock {
public:
    [[nodiscard]] std::chrono::milliseconds steadyNow() const override
    {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now().time_since_epoch());
    }

    [[nodiscard]] QDateTime wallNow() const override { return QDateTime::currentDateTime(); }
};

} // namespace

const Clock &systemClock()
{
    static const SystemClock clock;
    return clock;
}

} // namespace tollivar::platform
