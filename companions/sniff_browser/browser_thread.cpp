#include "companions/sniff_browser/browser_thread.h"

#include "companions/capture/browser_start.h"
#include "companions/capture/browsing_watch.h"
#include "platform/auto_reset_event.h"

#include <chrono>
#include <mutex>

namespace tollivar::sniff {

using Clock = std::chrono::steady_clock;

/// What the thread may use although the object on the main thread is gone.
struct BrowserThread::Shared {
    platform::AutoResetEvent stop;
    std::mutex mutex;
    BrowserThread *owner = nullptr; ///< null once it is being destroyed

    /// Runs `tell` on the main thread, unless nobody is left to hear it.
    void post(const std::function<void(BrowserThread &)> &tell)
    {
        const std::lock_guard lock(mutex);
        if (owner != nullptr) {
            QMetaObject::invokeMethod(
                owner, [object = owner, tell] { tell(*object); }, Qt::QueuedConnection);
        }
    }
};

namespace {

constexpr std::chrono::milliseconds kBetweenLists{200};

template<typename Shared>
void lookOn(Shared &shared, const QString &address)
{
    const auto browser = capture::startBrowser(capture::BrowserFace::Shown);
    if (!browser) {
        shared.post([reason = browser.error().text](BrowserThread &thread) {
            Q_EMIT thread.browserMissing(reason);
        });
        return;
    }
    const platform::AutoResetEvent::Watch wakeOnStop(shared.stop,
                                                     [&browser] { (*browser)->wake(); });
    capture::BrowsingWatch watch(**browser, address);
    auto next = Clock::now();
    bool hasNews = false;
    while (!shared.stop.isSet() && watch.step()) {
        hasNews = watch.takeNews() || hasNews;
        if (hasNews && Clock::now() >= next) {
            shared.post([media = watch.media()](BrowserThread &thread) {
                Q_EMIT thread.mediaChanged(media);
            });
            hasNews = false;
            next = Clock::now() + kBetweenLists;
        }
    }
    shared.post([](BrowserThread &thread) { Q_EMIT thread.browserEnded(); });
}

} // namespace

BrowserThread::BrowserThread(const QString &address)
    : m_shared(std::make_shared<Shared>())
    , m_thread([shared = m_shared, address] { lookOn(*shared, address); })
{
    m_shared->owner = this;
    m_thread.resume();
}

BrowserThread::~BrowserThread()
{
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->owner = nullptr;
    }
    m_shared->stop.set();
    constexpr std::chrono::seconds kPatience{10};
    if (!m_thread.waitForEnd(kPatience)) {
        qWarning("the browser does not end");
    }
}

} // namespace tollivar::sniff
