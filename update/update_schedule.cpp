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

std::optional<std::chrono::milliseconds> RetrySchedule::next()
{
    return m_taken < m_pauses.size() ? std::optional(m_pauses[m_taken++]) : std::nullopt;
}

} // namespace tollivar::update
