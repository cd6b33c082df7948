#include "ui/drop_zone/zone_presence.h"

namespace tollivar::ui {

void ZonePresence::setWindowMinimised(bool isMinimised)
{
    m_isMinimised = isMinimised;
    m_isDismissed = false;
}

void ZonePresence::toggle()
{
    const bool wasShown = isShown();
    m_options.isWanted = !wasShown;
    m_isDismissed = wasShown;
}

bool ZonePresence::isShown() const
{
    return m_options.isWanted || standsForWindow();
}

bool ZonePresence::standsForWindow() const
{
    return m_options.standsForWindow && m_isMinimised && !m_isDismissed;
}

} // namespace tollivar::ui
