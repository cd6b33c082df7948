#pragma once

#include "platform/auto_reset_event.h"
#include "platform/message_port.h"
#include "platform/worker_thread.h"
#include "tasks/api/task_info.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace tollivar::app {

/// The conversions of finished tasks: at most one for every two cores at a time, the others wait in
/// the order in which they came.
///
/// Threads: the main thread; each conversion runs on a thread of its own.
/// Owns:    the threads; the destructor stops what runs and waits for it.
class Conversions {
public:
    /// `onChange` is called when a task's conversion has news.
    explicit Conversions(std::function<void(std::uint32_t taskId)> onChange);
    ~Conversions();
    Conversions(const Conversions &) = delete;
    Conversions &operator=(const Conversions &) = delete;

    /// Begins, or waits to begin; a task that is being converted goes on as it is, and one that was
    /// just stopped begins anew.
    void start(std::uint32_t taskId, const tasks::TaskInfo &task);
    /// Ends a conversion that runs, forgets one that waits, and why one failed.
    void stop(std::uint32_t taskId);

    /// Stops what runs, waits for it, and forgets what waits.
    void stopAll();

    /// 0 to 99 while it runs or waits.
    [[nodiscard]] std::optional<int> percent(std::uint32_t taskId) const;
    /// Why it failed; empty when it did not.
    [[nodiscard]] QString failure(std::uint32_t taskId) const;

private:
    struct Run;

    void begin(std::uint32_t taskId, const tasks::TaskInfo &task);
    void beginWaiting();
    [[nodiscard]] bool waits(std::uint32_t taskId) const;
    void take(const platform::AppMessage &message);

    std::function<void(std::uint32_t)> m_onChange;
    platform::AppMessageInbox m_inbox;
    std::map<std::uint32_t, std::shared_ptr<Run>> m_runs;
    std::deque<std::pair<std::uint32_t, tasks::TaskInfo>> m_waiting;
    std::map<std::uint32_t, QString> m_failures;
};

} // namespace tollivar::app
