#pragma once

#include "platform/auto_reset_event.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace tollivar::probe {

/// Holds the program to its time: asks for a stop first, and ends the process when that did not
/// help, wherever it hangs.
///
/// Threads: made and destroyed on one thread; watches on one of its own.
/// Owns:    the thread, which the destructor ends at once. `stop` is borrowed.
class TimeLimit {
public:
    /// Sets `stop` after `patience` and ends the process with exit status 1 after `limit`.
    TimeLimit(platform::AutoResetEvent &stop, std::chrono::milliseconds patience,
              std::chrono::milliseconds limit);
    ~TimeLimit();
    TimeLimit(const TimeLimit &) = delete;
    TimeLimit &operator=(const TimeLimit &) = delete;

private:
    void watch(std::chrono::milliseconds patience, std::chrono::milliseconds limit);

    platform::AutoResetEvent &m_stop;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isOver = false;
    std::thread m_thread;
};

} // namespace tollivar::probe
