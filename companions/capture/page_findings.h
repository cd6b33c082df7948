#pragma once

#include "companions/capture/media_rank.h"
#include "companions/capture/network_watch.h"
#include "companions/capture/page_report.h"

#include <QString>

#include <map>
#include <set>
#include <vector>

namespace tollivar::capture {

/// What one page has shown of its media so far: what its network and its documents tell, joined.
///
/// Pure: holds what it was told, each address once, up to limits that no honest page reaches.
class PageFindings {
public:
    using News = NetworkWatch::News;

    /// Takes a network event of the page, its frames and its workers.
    News takeNetwork(const DevToolsMessage &event) { return m_network.take(event); }
    /// Media elements of a document; a medium keeps its largest area. True when one is new.
    bool takePlayed(const std::vector<PlayedMedium> &played);
    /// What a document only points to; `agent` is what the browser calls itself. True when one is
    /// new.
    bool takeOffered(const PageReport &report, const QString &agent);

    /// Addresses of which it is not known what cookies the browser sends, the answered ones first.
    /// Each is given out once, and over all calls no more than `limit`.
    [[nodiscard]] std::vector<QString> takeCookieQuestions(std::size_t limit);
    /// The answer to such a question; what went over the wire outweighs it.
    void setCookies(const QString &address, const QString &cookies);

    [[nodiscard]] PageMedia media(const QString &title) const;
    /// True while a request of the page waits for its end.
    [[nodiscard]] bool isBusy() const { return m_network.isBusy(); }

private:
    NetworkWatch m_network;
    std::vector<PlayedMedium> m_played;
    std::vector<WatchedRequest> m_offered;
    std::set<QString> m_asked;
    std::map<QString, QString> m_cookies; ///< by address, where the browser had to be asked
};

} // namespace tollivar::capture
