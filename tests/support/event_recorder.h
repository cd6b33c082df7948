#pragma once

#include "platform/message_port.h"
#include "tasks/api/task_event.h"

#include <QString>

#include <vector>

namespace tollivar::test {

/// Takes a worker's events and keeps them in order.
///
/// Threads: the test's; waiting runs its event loop.
class EventRecorder {
public:
    struct Event {
        std::uint32_t task = 0;
        tasks::TaskEventCode code = tasks::TaskEventCode::Stopped;
        std::uint64_t value = 0;
    };

    EventRecorder();

    [[nodiscard]] platform::AppMessagePort port() const { return m_inbox.port(); }
    [[nodiscard]] const std::vector<Event> &events() const { return m_events; }
    /// The codes in order, progress left out: "1 15 4 13 3 11 18 8".
    [[nodiscard]] QString codes() const;
    [[nodiscard]] bool has(tasks::TaskEventCode code) const;
    /// Waits for the event that ends a run; fails the test when none comes.
    void waitForEnd();

private:
    std::vector<Event> m_events;
    platform::AppMessageInbox m_inbox;
};

} // namespace tollivar::test
