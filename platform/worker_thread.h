#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace tollivar::platform {

/// One thread that runs one function once; created at rest, started by resume(), never killed.
///
/// Threads: belongs to the thread that made it; only the function runs elsewhere.
/// Owns:    the thread. Destroying it does not wait: a thread that still runs is let go and keeps
///          alive what its function captured, so capture shared owners and nothing borrowed.
/// Errors:  what the function throws ends the thread and is logged; report failures before that.
///          When the system has no thread left, the function goes unrun and the thread has ended.
class WorkerThread {
public:
    explicit WorkerThread(std::function<void()> function);
    ~WorkerThread();
    WorkerThread(const WorkerThread &) = delete;
    WorkerThread &operator=(const WorkerThread &) = delete;

    /// Starts the function; false when the system has no thread left, and nothing will come of it.
    /// Legal once.
    [[nodiscard]] bool resume();
    /// True once the function has returned. Never blocks; false before resume().
    [[nodiscard]] bool hasEnded() const;
    /// Waits for the end up to `limit`; true when it has ended.
    [[nodiscard]] bool waitForEnd(std::chrono::milliseconds limit) const;

private:
    struct State;
    std::function<void()> m_function;
    std::shared_ptr<State> m_state;
};

} // namespace tollivar::platform
