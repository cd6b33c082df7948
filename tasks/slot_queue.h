#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>

namespace tollivar::tasks {

/// How many tasks run, how many may, and in which order the others began to wait.
class SlotQueue {
public:
    explicit SlotQueue(int maximum) : m_maximum(maximum) {}

    [[nodiscard]] bool hasFreeSlot() const { return m_running < m_maximum; }
    [[nodiscard]] int running() const { return m_running; }
    void setMaximum(int maximum) { m_maximum = maximum; }

    void take() { ++m_running; }
    void release() { --m_running; }

    /// Puts an id at the tail. An id that stopped waiting stays until it reaches the head.
    void enqueue(std::uint32_t id) { m_waiting.push_back(id); }

    /// Takes out the first id that still waits, dropping those before it that do not.
    [[nodiscard]] std::optional<std::uint32_t>
    takeFirst(const std::function<bool(std::uint32_t id)> &stillWaits);

private:
    int m_maximum;
    int m_running = 0;
    std::deque<std::uint32_t> m_waiting;
};

} // namespace tollivar::tasks
