#include "companions/sniff_browser/browser_thread.h"

#include "companions/capture/browser_start.h"
#include "companions/capture/browsing_watch.h"
#include "platform/auto_reset_event.h"
#include "platform/owner_link.h"

#include <chrono>

namespace tollivar::sniff {

using Clock = std::chrono::steady_clock;

/// What the thread may use although the object on the main thread is gone.
struct BrowserThread::Shared {
    explicit Shared(BrowserThread &owner) : link(owner) {}

    platform::AutoResetEvent stop;
    platform::OwnerLink<BrowserThread> link;
};

namespace {

constexpr std::chrono::milliseconds kBetweenLists{200};

} // namespace

void BrowserThread::lookOn(Shared &shared, const QString &address)
{
    const auto browser = capture::startBrowser(capture::BrowserFace::Shown);
    if (!browser) {
        shared.link.post([reason = browser.error().text](BrowserThread &thread) {
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
            shared.link.post([media = watch.media()](BrowserThread &thread) {
                Q_EMIT thread.mediaChanged(media);
            });
            hasNews = false;
            next = Clock::now() + kBetweenLists;
        }
    }
    if (!shared.stop.isSet()) {
        shared.link.post([](BrowserThread &thread) { Q_EMIT thread.browserEnded(); });
    }
}

BrowserThread::BrowserThread(const QString &address)
    : m_shared(std::make_shared<Shared>(*this))
    , m_thread([shared = m_shared, address] {
        lookOn(*shared, address);
        shared->link.post([](BrowserThread &thread) { thread.tellGone(); });
    })
{
    if (!m_thread.resume()) {
        m_shared->link.post([](BrowserThread &thread) {
            Q_EMIT thread.browserMissing(tr("The system has no thread left to run a browser."));
            thread.tellGone();
        });
    }
}

void BrowserThread::tellGone()
{
    m_isGone = true;
    Q_EMIT gone();
}

void BrowserThread::end()
{
    m_shared->stop.set();
    disconnect(this, &BrowserThread::mediaChanged, nullptr, nullptr);
    disconnect(this, &BrowserThread::browserEnded, nullptr, nullptr);
    disconnect(this, &BrowserThread::browserMissing, nullptr, nullptr);
    if (m_isGone) {
        QMetaObject::invokeMethod(this, &BrowserThread::gone, Qt::QueuedConnection);
    }
}

BrowserThread::~BrowserThread()
{
    m_shared->link.cut();
    m_shared->stop.set();
    constexpr std::chrono::seconds kPatience{10};
    if (!m_thread.waitForEnd(kPatience)) {
        qWarning("the browser does not end");
    }
}

} // namespace tollivar::sniff
