#include "companions/capture/capture_engine.h"

#include "companions/capture/browser_start.h"
#include "companions/capture/page_watch.h"
#include "platform/web_address.h"

namespace tollivar::capture {

using platform::ErrorKind;
using platform::failure;
using platform::Result;

Result<std::vector<MediaFound>> CaptureEngine::find(const FindRequest &request,
                                                    platform::AutoResetEvent &stop)
{
    if (!platform::isWebAddress(request.address)) {
        return failure(ErrorKind::AskUser, QStringLiteral("only pages of the web are opened"));
    }
    const auto browser = startBrowser(BrowserFace::Hidden);
    if (!browser) {
        return tl::unexpected(browser.error());
    }
    const platform::AutoResetEvent::Watch wakeOnStop(stop, [&browser] { (*browser)->wake(); });
    PageWatch watch(**browser, request);
    while (!stop.isSet() && watch.step()) {
    }
    if (stop.isSet()) {
        return failure(ErrorKind::TryAgain, QStringLiteral("stopped"));
    }
    auto media = watch.media();
    if (media.empty() && !watch.hasShownPage()) {
        return failure(ErrorKind::TryAgain, (*browser)->isGone()
                                                ? QStringLiteral("the browser ended by itself")
                                                : QStringLiteral("the page could not be shown"));
    }
    return media;
}

} // namespace tollivar::capture
