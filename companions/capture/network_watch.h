#pragma once

#include "companions/capture/devtools_message.h"

#include <QString>

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace tollivar::capture {

/// The headers of a request that a second one for the same file has to repeat.
struct SentHeaders {
    QString cookies;
    QString agent;
    QString referer;
};

/// One answered request of a page, joined from the events that tell of it.
struct WatchedRequest {
    QString namedAddress; ///< as the page named it, before redirects
    QString address;      ///< that answered
    QString mediaType;
    int status = 0;
    std::optional<std::int64_t> length{}; ///< of the whole file, also when a part was asked for
    SentHeaders sent{};
    /// True when `sent` is what went over the wire; otherwise it is what the page asked for, which
    /// lacks the cookies.
    bool isSentKnown = false;
};

/// Joins the network events of all sessions into the answers that may be media.
///
/// Pure: holds what it was told, up to limits that no honest page reaches.
class NetworkWatch {
public:
    /// What an event changed.
    enum class News { None, Traffic, Candidate };

    /// Takes any event. Candidate: an answer that may be a medium came, or more is known of one.
    News take(const DevToolsMessage &event);

    /// Answers that may be media, in the order of their requests, each address once.
    [[nodiscard]] std::vector<WatchedRequest> candidates() const;
    /// True while a request waits for its end.
    [[nodiscard]] bool isBusy() const { return !m_underWay.empty(); }

private:
    enum class HowEnded { Whole, Cut };
    struct Response {
        QString address; ///< empty for that of the request
        QString mediaType;
        int status = 0;
        QJsonObject headers;
    };
    struct Exchange {
        WatchedRequest request{};
        /// What went over the wire, one entry per redirect and one for the last request; its events
        /// come before or after the others.
        std::vector<SentHeaders> wire;
        std::size_t redirects = 0;
        std::uint64_t order = 0;
        std::int64_t received = 0; ///< bytes of the body
        bool isGet = false;
        /// An answer that came before its request was told of.
        std::optional<Response> early{};
        /// And how it ended, when it even ended before that.
        std::optional<HowEnded> earlyEnd{};
    };

    News takeRequest(const QString &id, const QJsonObject &event);
    News takeWireHeaders(const QString &id, const QJsonObject &headers);
    News takeResponse(const QString &id, const Response &response);
    void takeData(const QString &id, double bytes);
    void takeEnd(const QString &id, HowEnded how);
    [[nodiscard]] bool makeRoomFor(const QString &id);

    std::map<QString, Exchange> m_exchanges;
    std::set<QString> m_underWay;
    std::uint64_t m_count = 0;
};

} // namespace tollivar::capture
