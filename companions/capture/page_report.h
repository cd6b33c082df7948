#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace tollivar::capture {

/// A media element of a document, as the page script sees it.
struct PlayedMedium {
    QString address;
    double area = 0; ///< square pixels on the page; 0 for what cannot be seen
};

/// What one document says of itself: the page, or a frame in it.
struct PageReport {
    QString address;
    QString title;
    bool isWholePage = false; ///< false for a frame
    std::vector<PlayedMedium> played;
    /// Media that the document only points to: links, and flash films that no browser plays.
    std::vector<QString> offered;
};

/// The isolated world that the page script runs in, unseen by the page, and the function there that
/// takes its reports.
inline constexpr QLatin1StringView kScriptWorld("tollivar");
inline constexpr QLatin1StringView kReportFunction("tollivarReport");

/// What the script does beside looking.
enum class PageScript {
    Plays,   ///< sets the media playing, without a sound: nobody else will
    Watches, ///< touches nothing: a person sits in front
};

/// The script for every document: reports what its media are, each time something has changed.
[[nodiscard]] QString pageScript(PageScript script);

/// One report of the script; nothing when it is none. Only http and https addresses come through.
[[nodiscard]] std::optional<PageReport> parsePageReport(const QString &text);

/// What a browser says by default of the page on which it met an address: all of it to the same
/// host, the host alone to another, nothing when security would be lost.
[[nodiscard]] QString refererFor(const QString &page, const QString &address);

} // namespace tollivar::capture
