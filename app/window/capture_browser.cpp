#include "app/window/capture_browser.h"

#include "fetch/capture_stream.h"

namespace tollivar::app {

CaptureBrowser::CaptureBrowser(int browserVersion)
    : m_stop(std::make_shared<platform::AutoResetEvent>())
    , m_thread([this, stop = m_stop, browserVersion] {
        fetch::followCaptureBrowser(
            fetch::captureBrowserCommandLine(browserVersion), *stop, [this](const QString &record) {
                QMetaObject::invokeMethod(
                    this, [this, record] { Q_EMIT captured(record); }, Qt::QueuedConnection);
            });
        QMetaObject::invokeMethod(
            this, [this] { Q_EMIT ended(); }, Qt::QueuedConnection);
    })
{
    m_thread.resume();
}

CaptureBrowser::~CaptureBrowser()
{
    m_stop->set();
    // The thread uses this object; it ends within one kill.
    constexpr std::chrono::hours kAsLongAsItTakes{1};
    static_cast<void>(m_thread.waitForEnd(kAsLongAsItTakes));
}

} // namespace tollivar::app
