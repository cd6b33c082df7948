#include "platform/auto_reset_event.h"

#include <utility>

namespace tollivar::platform {

void AutoResetEvent::set()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isSet = true;
    }
    m_changed.notify_one();
    const std::lock_guard lock(m_watchMutex);
    for (const auto &onSet : m_watches) {
        onSet();
    }
}

void AutoResetEvent::reset()
{
    const std::lock_guard lock(m_mutex);
    m_isSet = false;
}

bool AutoResetEvent::poll()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_isSet, false);
}

bool AutoResetEvent::wait(std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, limit, [this] { return m_isSet; });
    return std::exchange(m_isSet, false);
}

bool AutoResetEvent::isSet() const
{
    const std::lock_guard lock(m_mutex);
    return m_isSet;
}

AutoResetEvent::Watch::Watch(AutoResetEvent &event, std::function<void()> onSet) : m_event(event)
{
    const std::lock_guard lock(m_event.m_watchMutex);
    m_place = m_event.m_watches.insert(m_event.m_watches.end(), std::move(onSet));
    // A set() from here on waits for the lock above; one before it is seen here.
    if (m_event.isSet()) {
        (*m_place)();
    }
}

AutoResetEvent::Watch::~Watch()
{
    const std::lock_guard lock(m_event.m_watchMutex);
    m_event.m_watches.erase(m_place);
}

} // namespace tollivar::platform
