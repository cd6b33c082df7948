#pragma once

#include "companions/capture/media_found.h"
#include "platform/worker_thread.h"

#include <QObject>
#include <QString>

#include <memory>

namespace tollivar::sniff {

/// The browser and the thread that looks on.
///
/// Threads: made and destroyed on the main thread, where the signals arrive.
/// Owns:    thread and browser; the destructor ends the browser, whose profile goes with it.
class BrowserThread : public QObject {
    Q_OBJECT

public:
    /// Opens a browser window on `address`; an empty one on nothing.
    explicit BrowserThread(const QString &address);
    ~BrowserThread() override;
    BrowserThread(const BrowserThread &) = delete;
    BrowserThread &operator=(const BrowserThread &) = delete;

Q_SIGNALS:
    /// Every medium so far, best first; at most a few times a second.
    void mediaChanged(const std::vector<tollivar::capture::MediaFound> &media);
    /// The person closed the browser, or it is gone otherwise.
    void browserEnded();
    /// No browser could be started, and why.
    void browserMissing(const QString &reason);

private:
    struct Shared;
    std::shared_ptr<Shared> m_shared;
    platform::WorkerThread m_thread;
};

} // namespace tollivar::sniff
