#pragma once

#include "platform/message_port.h"
#include "platform/worker_thread.h"

#include <functional>
#include <memory>

namespace tollivar::app {

/// Whether pages can only be read as text here. Looks at the disk.
[[nodiscard]] bool lacksBrowser();

/// Tells a person who has no browser what to install, after the first page without media: before,
/// nobody misses one.
///
/// Threads: the main thread; the disk is asked on one of its own, once in a session.
class MissingBrowser {
public:
    /// `tell` is called at most once.
    explicit MissingBrowser(std::function<void()> tell);

    /// A page gave no media.
    void pageFailed();

private:
    platform::AppMessageInbox m_inbox;
    std::unique_ptr<platform::WorkerThread> m_look;
};

} // namespace tollivar::app
