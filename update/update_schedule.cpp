#include "update/update_schedule.h"

namespace tollivar::update {

bool isCheckDue(int mode, const QDateTime &lastCheck, const QDateTime &now)
{
    constexpr qint64 kWeek = 7;
    switch (static_cast<UpdateMode>(mode)) {
    case UpdateMode::EveryStart:
        return true;
    case UpdateMode::Weekly:
        return lastCheck > now || lastCheck.addDays(kWeek) <= now;
    case UpdateMode::OnlyWhenAsked:
    case UpdateMode::Never:
        break;
    }
    return false;
}

std::optional<std::chrono::minutes> RetrySchedule::next()
{
    using namespace std::chrono_literals;
    switch (m_attemptsLeft) {
    case 0:
        return std::nullopt;
    case 5:
        --m_attemptsLeft;
        return 5min;
    case 4:
        --m_attemptsLeft;
        return 10min;
    case 3:
        --m_attemptsLeft;
        return 20min;
    default:
        --m_attemptsLeft;
        return 30min;
    }
}

} // namespace tollivar::update
