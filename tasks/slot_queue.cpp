#include "tasks/slot_queue.h"

namespace tollivar::tasks {

std::optional<std::uint32_t>
SlotQueue::takeFirst(const std::function<bool(std::uint32_t id)> &stillWaits)
{
    while (!m_waiting.empty()) {
        const std::uint32_t id = m_waiting.front();
        m_waiting.pop_front();
        if (stillWaits(id)) {
            return id;
        }
    }
    return std::nullopt;
}

} // namespace tollivar::tasks
