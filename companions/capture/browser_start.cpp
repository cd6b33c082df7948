#include "companions/capture/browser_start.h"

#include "companions/capture/profile_folder.h"
#include "platform/browser_engine.h"

#include <QDir>
#include <QFileInfo>

namespace tollivar::capture {

using platform::ErrorKind;
using platform::failure;
using platform::Result;

namespace {

QStringList browserArguments(BrowserFace face, const QString &profile)
{
    QStringList arguments = {
        QStringLiteral("--remote-debugging-pipe"),
        QStringLiteral("--user-data-dir=") + profile,
        QStringLiteral("--no-startup-window"),
        QStringLiteral("--no-first-run"),
        QStringLiteral("--no-default-browser-check"),
        QStringLiteral("--disable-extensions"),
        QStringLiteral("--disable-breakpad"),
        QStringLiteral("--password-store=basic"),
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
    if (face == BrowserFace::Hidden) {
        arguments += {QStringLiteral("--headless=new"), QStringLiteral("--disable-gpu"),
                      QStringLiteral("--mute-audio"),
                      QStringLiteral("--autoplay-policy=no-user-gesture-required")};
    }
    if (platform::isAdministrator()) {
        // The browser refuses to start for an administrator otherwise.
        arguments.append(QStringLiteral("--no-sandbox"));
    }
    return arguments;
}

/// Everything that the browser would write elsewhere goes into the profile too.
QStringList browserEnvironment(BrowserFace face, const QString &profile)
{
    QStringList environment;
    for (const QString &name : {QStringLiteral("HOME"), QStringLiteral("XDG_CONFIG_HOME"),
                                QStringLiteral("XDG_CACHE_HOME"), QStringLiteral("XDG_DATA_HOME"),
                                QStringLiteral("TMPDIR")}) {
        environment.append(name + QLatin1Char('=') + profile);
    }
    // The key to the screen lies in the home that the browser does not get.
    const QString key = QDir::homePath() + QStringLiteral("/.Xauthority");
    if (face == BrowserFace::Shown && qEnvironmentVariableIsEmpty("XAUTHORITY") &&
        QFileInfo::exists(key)) {
        environment.append(QStringLiteral("XAUTHORITY=") + key);
    }
    return environment;
}

} // namespace

Result<std::unique_ptr<platform::GuardedChild>> startBrowser(BrowserFace face)
{
    const auto browser =
        platform::findBrowser(face == BrowserFace::Shown ? platform::BrowserUse::WithWindow
                                                         : platform::BrowserUse::WithoutWindow);
    if (!browser) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("no browser is installed; install chromium"));
    }
    const auto profile = newProfilePath();
    if (!profile) {
        return tl::unexpected(profile.error());
    }
    return platform::GuardedChild::start({.program = *browser,
                                          .arguments = browserArguments(face, *profile),
                                          .environment = browserEnvironment(face, *profile),
                                          .folder = *profile});
}

} // namespace tollivar::capture
