#pragma once

#include "companions/capture/devtools_connection.h"
#include "companions/capture/media_found.h"
#include "companions/capture/page_findings.h"

#include <map>
#include <vector>

namespace tollivar::capture {

/// Looks on while a person browses, in as many windows as they like, and gathers the media that the
/// pages play.
///
/// Threads: one thread, that calls step() again and again.
/// Owns:    nothing; the browser is borrowed.
class BrowsingWatch {
public:
    /// Opens a window on `address`; an empty one on nothing.
    BrowsingWatch(platform::GuardedChild &browser, QString address);

    /// Waits a moment for the browser and takes what it says. False when nothing more is to come:
    /// the last window was closed, or the browser is gone.
    [[nodiscard]] bool step();

    /// True once after each change of media().
    [[nodiscard]] bool takeNews();

    /// Every medium so far, each address once: the pages of now before those that were left, the
    /// newest first, and of each page the best first.
    [[nodiscard]] std::vector<MediaFound> media() const;

private:
    /// What one window, or tab, shows now.
    struct Page {
        QString target;
        QString address;
        QString title;
        bool isReported = false; ///< before that its media have no title, and wait
        PageFindings findings;
        std::uint64_t since = 0; ///< a later page has a larger number
    };

    void takeEvent(const DevToolsMessage &event);
    void takeTarget(const DevToolsMessage &event);
    void takeReport(Page &page, const QString &text);
    void takeNetwork(const QString &root, Page &page, const DevToolsMessage &event);
    void dropSession(const QString &session);
    void leave(Page &page);
    void askForMissingCookies(const QString &root, Page &page);
    [[nodiscard]] std::vector<MediaFound> mediaOf(const Page &page) const;

    DevToolsConnection m_connection;
    std::map<QString, Page> m_pages;    ///< by the session of the whole page
    std::map<QString, QString> m_roots; ///< a session, also of a frame or worker, to its page's
    std::vector<MediaFound> m_left;     ///< of pages that were left, the newest first
    QString m_firstAddress;             ///< empty once it was opened
    QString m_agent;
    std::uint64_t m_count = 0;
    bool m_hadPage = false;
    bool m_hasNews = false;
};

} // namespace tollivar::capture
