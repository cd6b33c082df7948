#include "update/update_schedule.h"

namespace tollivar::update {

bool checksByItself(int mode)
{
    switch (static_cast<UpdateMode>(mode)) {
    case UpdateMode::EveryStart:
    case UpdateMode::Weekly:
        return true;
    case UpdateMode::OnlyWhenAsked:
    case UpdateMode::Never:
        break;
    }
    return false;
}

bool isCheckDue(int mode, const QDateTime &lastCheck, const QDateTime &now)
{
    constexpr qint64 kWeek = 7;
    const bool isLongAgo = lastCheck > now || lastCheck.addDays(kWeek) <= now;
    return checksByItself(mode) && (mode != static_cast<int>(UpdateMode::Weekly) || isLongAgo);
}

std::optional<std::chrono::milliseconds> RetrySchedule::next()
{
    return m_taken < m_pauses.size() ? std::optional(m_pauses[m_taken++]) : std::nullopt;
}

} // namespace tollivar::update
