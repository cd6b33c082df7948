#include "platform/browser_engine.h"

namespace tollivar::platform {

QStringList browserPlaces()
{
    // The headless shell starts three times as fast as the whole browser. Its wrapper script on
    // PATH does not hand signals on, so the program behind it comes first.
    return {QStringLiteral("/usr/lib/chromium/chromium-headless-shell"),
            QStringLiteral("chromium-headless-shell"),
            QStringLiteral("chrome-headless-shell"),
            QStringLiteral("chromium"),
            QStringLiteral("chromium-browser"),
            QStringLiteral("google-chrome"),
            QStringLiteral("google-chrome-stable"),
            QStringLiteral("microsoft-edge"),
            QStringLiteral("brave-browser"),
            QStringLiteral("vivaldi")};
}

} // namespace tollivar::platform
