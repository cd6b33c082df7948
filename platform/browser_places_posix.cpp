#include "platform/browser_engine.h"

namespace tollivar::platform {

QStringList browserPlaces(BrowserUse use)
{
    // Wrapper scripts on PATH do not hand signals on, so the programs behind them come first.
    const QStringList headless{QStringLiteral("/usr/lib/chromium/chromium-headless-shell"),
                               QStringLiteral("chromium-headless-shell"),
                               QStringLiteral("chrome-headless-shell")};
    const QStringList whole{QStringLiteral("/usr/lib/chromium/chromium"),
                            QStringLiteral("chromium"),
                            QStringLiteral("chromium-browser"),
                            QStringLiteral("google-chrome"),
                            QStringLiteral("google-chrome-stable"),
                            QStringLiteral("microsoft-edge"),
                            QStringLiteral("brave-browser"),
                            QStringLiteral("vivaldi")};
    // The headless shell starts three times as fast as the whole browser.
    return use == BrowserUse::WithWindow ? whole : headless + whole;
}

} // namespace tollivar::platform
