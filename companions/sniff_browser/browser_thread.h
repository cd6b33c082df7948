#pragma once

#include "companions/capture/media_found.h"
#include "platform/worker_thread.h"

#include <QObject>
#include <QString>

#include <memory>

namespace tollivar::sniff {

/// The browser and the thread that looks on.
///
/// Threads: made, used and destroyed on the main thread, where the signals arrive.
/// Owns:    thread and browser; the browser's profile goes with it. The destructor ends the browser
///          and waits for that, some seconds at worst: while a person looks on, end() comes first.
/// States:  looking on until end(), or until the browser ends by itself or is missing; then gone().
class BrowserThread : public QObject {
    Q_OBJECT

public:
    /// Opens a browser window on `address`; an empty one on nothing.
    explicit BrowserThread(const QString &address);
    ~BrowserThread() override;
    BrowserThread(const BrowserThread &) = delete;
    BrowserThread &operator=(const BrowserThread &) = delete;

    /// Makes the browser end, and never waits for it: gone() tells when it has, again if it had
    /// before. Nothing else is told from now on.
    void end();

Q_SIGNALS:
    /// Every medium so far, best first; at most a few times a second.
    void mediaChanged(const std::vector<tollivar::capture::MediaFound> &media);
    /// The person closed the browser, or it ended otherwise by itself.
    void browserEnded();
    /// No browser could be started, and why.
    void browserMissing(const QString &reason);
    /// The browser has ended and its profile is removed.
    void gone();

private:
    struct Shared;
    static void lookOn(Shared &shared, const QString &address);
    void tellGone();

    std::shared_ptr<Shared> m_shared;
    platform::WorkerThread m_thread;
    bool m_isGone = false;
};

} // namespace tollivar::sniff
