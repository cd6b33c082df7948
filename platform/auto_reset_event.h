#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>

namespace tollivar::platform {

/// An event that one poll or one wait takes back: the stop request of a worker.
///
/// Threads: all functions may be called from any thread.
/// States:  set() makes it set until exactly one poll() or wait() sees it, or reset() clears it;
///          setting a set event changes nothing.
class AutoResetEvent {
public:
    AutoResetEvent() = default;
    ~AutoResetEvent() = default;
    AutoResetEvent(const AutoResetEvent &) = delete;
    AutoResetEvent &operator=(const AutoResetEvent &) = delete;

    /// Wakes one waiter at once and calls every Watch.
    void set();
    void reset();

    /// True, and clears the event, when it is set. Never blocks.
    [[nodiscard]] bool poll();
    /// As poll(), but waits up to `limit` for the event; wakes within a millisecond of set().
    [[nodiscard]] bool wait(std::chrono::milliseconds limit);
    /// True when it is set, and leaves it so: for a blocking call that must give way to a poll.
    [[nodiscard]] bool isSet() const;

    /// Calls a function whenever the event is set, as long as the watch lives: wakes what a
    /// blocking library call waits on (a socket, a poll).
    ///
    /// Threads: the function runs on the thread that calls set(); it must be quick and must not
    ///          touch the event. If the event is already set when the watch begins, the function
    ///          runs at once on the watching thread. After the destructor no call is under way.
    class Watch {
    public:
        Watch(AutoResetEvent &event, std::function<void()> onSet);
        ~Watch();
        Watch(const Watch &) = delete;
        Watch &operator=(const Watch &) = delete;

    private:
        AutoResetEvent &m_event;
        std::list<std::function<void()>>::iterator m_place;
    };

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isSet = false;
    /// Guards the watches apart from the flag, so that a watch may take its time unseen by polls.
    std::mutex m_watchMutex;
    std::list<std::function<void()>> m_watches;
};

} // namespace tollivar::platform
