#include "companions/pageprobe/time_limit.h"

#include <QtGlobal>

#include <cstdlib>

namespace tollivar::probe {

TimeLimit::TimeLimit(platform::AutoResetEvent &stop, std::chrono::milliseconds patience,
                     std::chrono::milliseconds limit)
    : m_stop(stop)
    , m_thread([this, patience, limit] { watch(patience, limit); })
{
}

TimeLimit::~TimeLimit()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
    }
    m_changed.notify_one();
    m_thread.join();
}

void TimeLimit::watch(std::chrono::milliseconds patience, std::chrono::milliseconds limit)
{
    const auto begin = std::chrono::steady_clock::now();
    std::unique_lock lock(m_mutex);
    if (m_changed.wait_until(lock, begin + patience, [this] { return m_isOver; })) {
        return;
    }
    qWarning("out of time, stopping");
    m_stop.set();
    if (!m_changed.wait_until(lock, begin + limit, [this] { return m_isOver; })) {
        // Destructors could hang where the work does; the guardians clean up behind us.
        std::_Exit(1);
    }
}

} // namespace tollivar::probe
