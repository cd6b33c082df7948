#include "companions/capture/network_watch.h"

#include "companions/capture/answer_length.h"
#include "companions/capture/media_kind.h"
#include "platform/web_address.h"

#include <algorithm>

namespace tollivar::capture {

namespace {

constexpr std::size_t kMaximumExchanges = 5'000;
constexpr std::size_t kMaximumRedirects = 32;
constexpr qsizetype kMaximumHeader = 65'536;
/// Of one event.
constexpr double kMaximumData = 1e12;

/// A header found without regard to case.
QString headerOf(const QJsonObject &headers, QStringView name)
{
    for (auto header = headers.begin(); header != headers.end(); ++header) {
        if (header.key().compare(name, Qt::CaseInsensitive) == 0) {
            return header.value().toString().left(kMaximumHeader);
        }
    }
    return {};
}

SentHeaders sentIn(const QJsonObject &headers)
{
    return {.cookies = headerOf(headers, u"cookie"),
            .agent = headerOf(headers, u"user-agent"),
            .referer = headerOf(headers, u"referer")};
}

} // namespace

NetworkWatch::News NetworkWatch::take(const DevToolsMessage &event)
{
    // The browser gives every request an id of its own, whichever session tells of it; frames and
    // workers report some of their requests through their parent.
    const QString id = event.content[u"requestId"].toString();
    if (id.isEmpty() || !makeRoomFor(id)) {
        return News::None;
    }
    if (event.method == u"Network.requestWillBeSent") {
        return takeRequest(id, event.content);
    }
    if (event.method == u"Network.requestWillBeSentExtraInfo") {
        return takeWireHeaders(id, event.content[u"headers"].toObject());
    }
    if (event.method == u"Network.responseReceived") {
        const QJsonObject response = event.content[u"response"].toObject();
        return takeResponse(id, {.address = response[u"url"].toString(),
                                 .mediaType = response[u"mimeType"].toString(),
                                 .status = response[u"status"].toInt(),
                                 .headers = response[u"headers"].toObject()});
    }
    if (event.method == u"Network.responseReceivedExtraInfo") {
        // Comes also when the page is too busy to tell of its answers.
        const QJsonObject headers = event.content[u"headers"].toObject();
        return takeResponse(id, {.address = {},
                                 .mediaType = headerOf(headers, u"content-type"),
                                 .status = event.content[u"statusCode"].toInt(),
                                 .headers = headers});
    }
    if (event.method == u"Network.dataReceived") {
        takeData(id, event.content[u"dataLength"].toDouble());
    } else if (event.method == u"Network.loadingFinished") {
        takeEnd(id, HowEnded::Whole);
    } else if (event.method == u"Network.loadingFailed") {
        takeEnd(id, HowEnded::Cut);
    }
    return News::None;
}

bool NetworkWatch::makeRoomFor(const QString &id)
{
    if (m_exchanges.size() >= kMaximumExchanges && !m_exchanges.contains(id)) {
        // Those without an answer give way: of some only a late header ever came.
        std::erase_if(m_exchanges,
                      [](const auto &entry) { return entry.second.request.status == 0; });
        m_underWay.clear();
    }
    return m_exchanges.size() < kMaximumExchanges || m_exchanges.contains(id);
}

NetworkWatch::News NetworkWatch::takeRequest(const QString &id, const QJsonObject &event)
{
    const QJsonObject sent = event[u"request"].toObject();
    const QString address = sent[u"url"].toString();
    if (!platform::isWebAddress(address)) {
        return News::None;
    }
    Exchange &exchange = m_exchanges[id];
    if (event.contains(u"redirectResponse")) {
        exchange.redirects = std::min(exchange.redirects + 1, kMaximumRedirects);
    } else {
        exchange.request.namedAddress = address;
        exchange.order = ++m_count;
    }
    exchange.request.address = address;
    exchange.request.sent = sentIn(sent[u"headers"].toObject());
    exchange.isGet = sent[u"method"].toString() == u"GET";
    m_underWay.insert(id);
    News news = News::Traffic;
    if (const auto early = std::exchange(exchange.early, std::nullopt)) {
        news = takeResponse(id, *early);
    }
    if (const auto end = std::exchange(exchange.earlyEnd, std::nullopt)) {
        takeEnd(id, *end);
    }
    return news;
}

NetworkWatch::News NetworkWatch::takeWireHeaders(const QString &id, const QJsonObject &headers)
{
    Exchange &exchange = m_exchanges[id];
    if (exchange.wire.size() <= kMaximumRedirects) {
        exchange.wire.push_back(sentIn(headers));
    }
    return exchange.request.status != 0 ? News::Candidate : News::None;
}

NetworkWatch::News NetworkWatch::takeResponse(const QString &id, const Response &response)
{
    const bool isThere = response.status == 200 || response.status == 206;
    if (isThere && m_exchanges[id].request.namedAddress.isEmpty()) {
        // The wire's word may overtake the page's own; a busy page may never say more.
        m_exchanges[id].early = response;
        return News::Traffic;
    }
    const auto found = m_exchanges.find(id);
    if (found == m_exchanges.end()) {
        return News::Traffic;
    }
    WatchedRequest &request = found->second.request;
    const QString address = response.address.isEmpty() ? request.address : response.address;
    if (!found->second.isGet || !isThere || !platform::isWebAddress(address) ||
        !isMedium(kindOf(response.mediaType, address))) {
        request.status = 0;
        return News::Traffic;
    }
    request.address = address;
    request.status = response.status;
    request.mediaType = response.mediaType.left(kMaximumHeader);
    request.length = lengthOfAnswer(headerOf(response.headers, u"content-range"),
                                    headerOf(response.headers, u"content-length"));
    return News::Candidate;
}

void NetworkWatch::takeData(const QString &id, double bytes)
{
    const auto found = m_exchanges.find(id);
    if (found != m_exchanges.end() && bytes > 0 && bytes < kMaximumData) {
        found->second.received += static_cast<std::int64_t>(bytes);
    }
}

void NetworkWatch::takeEnd(const QString &id, HowEnded how)
{
    m_underWay.erase(id);
    const auto found = m_exchanges.find(id);
    if (found == m_exchanges.end()) {
        return;
    }
    WatchedRequest &request = found->second.request;
    if (found->second.early) {
        found->second.earlyEnd = how;
    } else if (request.status == 0) {
        m_exchanges.erase(found);
    } else if (request.status == 200 && !request.length && how == HowEnded::Whole) {
        request.length = found->second.received;
    }
}

std::vector<WatchedRequest> NetworkWatch::candidates() const
{
    std::vector<const Exchange *> answered;
    for (const auto &[id, exchange] : m_exchanges) {
        if (exchange.request.status != 0) {
            answered.push_back(&exchange);
        }
    }
    std::sort(answered.begin(), answered.end(),
              [](const auto *left, const auto *right) { return left->order < right->order; });
    std::vector<WatchedRequest> requests;
    std::map<QString, std::size_t> places;
    for (const Exchange *exchange : answered) {
        WatchedRequest request = exchange->request;
        if (exchange->wire.size() > exchange->redirects) {
            request.sent = exchange->wire[exchange->redirects];
            request.isSentKnown = true;
        }
        // A player asks for the parts of a file one after the other.
        const auto [place, isNew] = places.emplace(request.address, requests.size());
        if (isNew) {
            requests.push_back(std::move(request));
        } else if (WatchedRequest &first = requests[place->second]; !first.length) {
            first.length = request.length;
        }
    }
    return requests;
}

} // namespace tollivar::capture
