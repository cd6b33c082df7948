#include "app/missing_browser.h"

#include "platform/browser_engine.h"

namespace tollivar::app {

bool lacksBrowser()
{
    return !platform::findBrowser();
}

MissingBrowser::MissingBrowser(std::function<void()> tell)
    : m_inbox([tell = std::move(tell)](const platform::AppMessage & /*message*/) { tell(); })
{
}

void MissingBrowser::pageFailed()
{
    if (m_look) {
        return;
    }
    m_look = std::make_unique<platform::WorkerThread>([port = m_inbox.port()] {
        if (lacksBrowser()) {
            port.post(platform::AppMessageId::BrowserMissing, 0, 0);
        }
    });
    if (!m_look->resume()) {
        // The next page asks again.
        m_look.reset();
    }
}

} // namespace tollivar::app
