#pragma once

#include <functional>
#include <memory>

namespace tollivar::platform {

/// Turns the person's request to end a terminal program (Ctrl-C, a closed terminal, a polite kill)
/// into a call on the main thread; a second request ends the process at once.
///
/// Threads: made and destroyed on the main thread, at most one at a time; the handler runs there,
///          from the event loop, once.
/// Owns:    what those requests mean while it lives; their former meaning comes back afterwards.
/// Errors:  none is told: without a free file descriptor the requests keep their former meaning.
class InterruptWatch {
public:
    /// `secondStatus` is the exit status when the person asks twice.
    InterruptWatch(int secondStatus, std::function<void()> onInterrupt);
    ~InterruptWatch();
    InterruptWatch(const InterruptWatch &) = delete;
    InterruptWatch &operator=(const InterruptWatch &) = delete;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace tollivar::platform
