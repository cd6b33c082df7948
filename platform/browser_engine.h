#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <chrono>
#include <optional>

namespace tollivar::platform {

/// The browser that the capture engine drives.
///
/// Threads: any; the environment must not change meanwhile.

/// The major version when there is no browser, or none that tells its version.
inline constexpr int kUnknownBrowserVersion = -1;

/// What a browser is wanted for.
enum class BrowserUse {
    WithoutWindow, ///< a headless one is best, since it starts fastest
    WithWindow,    ///< a headless one does not do
};

/// Absolute path of the browser: what the environment variable TOLLIVAR_BROWSER names, and nothing
/// else when it is set; otherwise the first of browserPlaces() that can be run.
[[nodiscard]] std::optional<QString> findBrowser(BrowserUse use = BrowserUse::WithoutWindow);

/// Where browsers of the Chromium family are looked for, best first: paths, and names for PATH.
[[nodiscard]] QStringList browserPlaces(BrowserUse use = BrowserUse::WithoutWindow);

/// Asks `browser` for its version by running it. Blocks up to `limit`, after which the browser is
/// ended. kUnknownBrowserVersion when it cannot be run or gives no version in time.
[[nodiscard]] int browserMajorVersion(const QString &browser, std::chrono::milliseconds limit);

/// The major version in what a browser says of itself, such as "Chromium 156.0.8078.79 built on
/// Debian": the number before the first point of the first word that begins with digits and a
/// point. kUnknownBrowserVersion when there is none, or it is not a number from 0 to 999,999.
[[nodiscard]] int majorVersionIn(QStringView text);

} // namespace tollivar::platform
