#include "app/window/capture_browser.h"

#include "fetch/capture_stream.h"
#include "platform/owner_link.h"

namespace tollivar::app {

/// What the thread may use although the object on the main thread is gone.
struct CaptureBrowser::Shared {
    explicit Shared(CaptureBrowser &owner) : link(owner) {}

    platform::AutoResetEvent stop;
    platform::OwnerLink<CaptureBrowser> link;
};

FollowBrowser installedBrowser(int browserVersion)
{
    return
        [commandLine = fetch::captureBrowserCommandLine(browserVersion)](
            platform::AutoResetEvent &stop, const std::function<void(const QString &)> &onRecord) {
            fetch::followCaptureBrowser(commandLine, stop, onRecord);
        };
}

CaptureBrowser::CaptureBrowser(FollowBrowser follow, std::chrono::milliseconds patience)
    : m_shared(std::make_shared<Shared>(*this))
    , m_thread([shared = m_shared, follow = std::move(follow)] {
        follow(shared->stop, [&shared](const QString &record) {
            shared->link.post([record](CaptureBrowser &owner) { Q_EMIT owner.captured(record); });
        });
        shared->link.post([](CaptureBrowser &owner) { Q_EMIT owner.ended(); });
    })
    , m_patience(patience)
{
    if (!m_thread.resume()) {
        m_shared->link.post([](CaptureBrowser &owner) { Q_EMIT owner.ended(); });
    }
}

CaptureBrowser::~CaptureBrowser()
{
    m_shared->link.cut();
    m_shared->stop.set();
    if (!m_thread.waitForEnd(m_patience)) {
        qWarning("the capture browser does not end");
    }
}

} // namespace tollivar::app
