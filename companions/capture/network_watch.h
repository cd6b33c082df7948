#pragma once

#include "companions/capture/devtools_connection.h"
#include "companions/capture/media_found.h"

#include <QJsonObject>
#include <QString>

#include <map>
#include <vector>

namespace tollivar::capture {

/// One request of a page, joined from the events that tell of it.
struct WatchedRequest {
    QString firstAddress; ///< before redirects
    QString address;
    QString mediaType;
    int status = 0;
    std::optional<std::int64_t> length{};
    /// What the browser really sent where it says so, else what the page asked it to send; names
    /// in lower case.
    std::map<QString, QString> sentHeaders{};
    bool hasRealHeaders = false;
    int order = 0;
};

/// Joins the network events of all sessions into requests.
///
/// Pure: holds what it was told, up to a limit that no honest page reaches.
class NetworkWatch {
public:
    /// Takes an event of the Network domain; true when it told of an answer.
    bool take(const DevToolsMessage &event);

    /// Every answered request, in the order of the requests.
    [[nodiscard]] std::vector<WatchedRequest> answered() const;

private:
    void takeRequest(WatchedRequest &request, const QJsonObject &event);
    void takeHeaders(WatchedRequest &request, const QJsonObject &headers);
    void takeResponse(WatchedRequest &request, const QJsonObject &response);

    std::map<QString, WatchedRequest> m_requests;
    int m_count = 0;
};

} // namespace tollivar::capture
