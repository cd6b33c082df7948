#include "tasks/slot_queue.h"

#include <unordered_set>

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

int SlotQueue::count(const std::function<bool(std::uint32_t id)> &stillWaits) const
{
    std::unordered_set<std::uint32_t> waiting;
    for (const std::uint32_t id : m_waiting) {
        if (stillWaits(id)) {
            waiting.insert(id);
        }
    }
    return static_cast<int>(waiting.size());
}

} // namespace tollivar::tasks
