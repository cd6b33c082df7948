#include "companions/capture/capture_engine.h"

#include "companions/capture/page_watch.h"
#include "companions/capture/profile_folder.h"
#include "platform/browser_engine.h"
#include "platform/guarded_child.h"

#include <QUrl>

namespace tollivar::capture {

using platform::ErrorKind;
using platform::failure;
using platform::Result;

namespace {

QStringList browserArguments(const QString &profile)
{
    QStringList arguments = {
        QStringLiteral("--headless=new"),
        QStringLiteral("--remote-debugging-pipe"),
        QStringLiteral("--user-data-dir=") + profile,
        QStringLiteral("--no-startup-window"),
        QStringLiteral("--no-first-run"),
        QStringLiteral("--no-default-browser-check"),
        QStringLiteral("--disable-gpu"),
        QStringLiteral("--disable-extensions"),
        QStringLiteral("--disable-breakpad"),
        QStringLiteral("--password-store=basic"),
        QStringLiteral("--mute-audio"),
        QStringLiteral("--autoplay-policy=no-user-gesture-required"),
        // What is found is fetched without a proxy too; some servers hand a file only to the
        // machine that asked for its page.
        QStringLiteral("--no-proxy-server"),
        // Nobody is called but the hosts of the page.
        QStringLiteral("--disable-background-networking"),
        QStringLiteral("--disable-component-update"),
        QStringLiteral("--disable-default-apps"),
        QStringLiteral("--disable-domain-reliability"),
        QStringLiteral("--disable-sync"),
        QStringLiteral("--no-pings"),
        QStringLiteral("--disable-features=Translate,MediaRouter,OptimizationHints"),
    };
    if (platform::isAdministrator()) {
        // The browser refuses to start for an administrator otherwise.
        arguments.append(QStringLiteral("--no-sandbox"));
    }
    return arguments;
}

/// Everything that the browser would write elsewhere goes into the profile too.
QStringList browserEnvironment(const QString &profile)
{
    QStringList environment;
    for (const QString &name : {QStringLiteral("HOME"), QStringLiteral("XDG_CONFIG_HOME"),
                                QStringLiteral("XDG_CACHE_HOME"), QStringLiteral("XDG_DATA_HOME"),
                                QStringLiteral("TMPDIR")}) {
        environment.append(name + QLatin1Char('=') + profile);
    }
    return environment;
}

Result<std::unique_ptr<platform::GuardedChild>> startBrowser()
{
    const auto browser = platform::findBrowser();
    if (!browser) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("no browser is installed; install chromium"));
    }
    const auto profile = newProfilePath();
    if (!profile) {
        return tl::unexpected(profile.error());
    }
    return platform::GuardedChild::start({.program = *browser,
                                          .arguments = browserArguments(*profile),
                                          .environment = browserEnvironment(*profile),
                                          .folder = *profile});
}

} // namespace

Result<std::vector<MediaFound>> CaptureEngine::find(const FindRequest &request,
                                                    platform::AutoResetEvent &stop)
{
    const QString scheme = QUrl(request.address, QUrl::StrictMode).scheme().toLower();
    if (scheme != u"http" && scheme != u"https") {
        // A browser opens much else, files of this machine among it.
        return failure(ErrorKind::AskUser, QStringLiteral("only pages of the web are opened"));
    }
    const auto browser = startBrowser();
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
