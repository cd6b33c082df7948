#include "companions/capture/network_watch.h"

#include <algorithm>

namespace tollivar::capture {

namespace {

constexpr std::size_t kMaximumRequests = 20'000;

/// A header of an answer, found without regard to case.
QString headerOf(const QJsonObject &headers, QStringView name)
{
    for (auto header = headers.begin(); header != headers.end(); ++header) {
        if (header.key().compare(name, Qt::CaseInsensitive) == 0) {
            return header.value().toString();
        }
    }
    return {};
}

/// The whole length: of a part, what stands behind the slash of its range.
std::optional<std::int64_t> lengthOf(const QJsonObject &headers)
{
    const QString range = headerOf(headers, u"content-range");
    const QString text = range.contains(u'/') ? range.mid(range.indexOf(u'/') + 1)
                                              : headerOf(headers, u"content-length");
    bool isNumber = false;
    const qlonglong length = text.trimmed().toLongLong(&isNumber);
    return isNumber && length >= 0 ? std::optional<std::int64_t>(length) : std::nullopt;
}

} // namespace

bool NetworkWatch::take(const DevToolsMessage &event)
{
    const QString id = event.session + QLatin1Char('/') + event.content[u"requestId"].toString();
    if (!m_requests.contains(id) && m_requests.size() >= kMaximumRequests) {
        return false;
    }
    if (event.method == u"Network.requestWillBeSent") {
        takeRequest(m_requests[id], event.content);
    } else if (event.method == u"Network.requestWillBeSentExtraInfo") {
        // May come before the request itself.
        WatchedRequest &request = m_requests[id];
        request.hasRealHeaders = true;
        takeHeaders(request, event.content[u"headers"].toObject());
    } else if (event.method == u"Network.responseReceived") {
        takeResponse(m_requests[id], event.content[u"response"].toObject());
        return true;
    }
    return false;
}

void NetworkWatch::takeRequest(WatchedRequest &request, const QJsonObject &event)
{
    const QJsonObject sent = event[u"request"].toObject();
    request.address = sent[u"url"].toString();
    if (!event.contains(u"redirectResponse")) {
        request.firstAddress = request.address;
        request.order = m_count++;
    }
    if (!request.hasRealHeaders) {
        takeHeaders(request, sent[u"headers"].toObject());
    }
}

void NetworkWatch::takeHeaders(WatchedRequest &request, const QJsonObject &headers)
{
    request.sentHeaders.clear();
    for (auto header = headers.begin(); header != headers.end(); ++header) {
        request.sentHeaders[header.key().toLower()] = header.value().toString();
    }
}

void NetworkWatch::takeResponse(WatchedRequest &request, const QJsonObject &response)
{
    request.address = response[u"url"].toString();
    request.status = response[u"status"].toInt();
    request.mediaType = response[u"mimeType"].toString();
    request.length = lengthOf(response[u"headers"].toObject());
}

std::vector<WatchedRequest> NetworkWatch::answered() const
{
    std::vector<WatchedRequest> requests;
    for (const auto &[id, request] : m_requests) {
        if (request.status != 0) {
            requests.push_back(request);
        }
    }
    std::sort(requests.begin(), requests.end(),
              [](const auto &left, const auto &right) { return left.order < right.order; });
    return requests;
}

} // namespace tollivar::capture
