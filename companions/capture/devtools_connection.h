#pragma once

#include "platform/guarded_child.h"

#include <QJsonObject>
#include <QString>

#include <chrono>
#include <functional>
#include <map>
#include <optional>

namespace tollivar::capture {

/// One message of the browser, checked.
struct DevToolsMessage {
    int id = 0;          ///< of the command it answers; 0 for an event
    QString method;      ///< of the event
    QString session;     ///< empty for the browser itself
    QJsonObject content; ///< an event's parameters, or a command's result
    bool isError = false;
};

/// The message in one JSON text; nothing when it is none.
[[nodiscard]] std::optional<DevToolsMessage> parseDevToolsMessage(const QByteArray &text);

/// Commands and events over the browser's DevTools pipe.
///
/// Threads: one thread; handlers run inside pump().
class DevToolsConnection {
public:
    using EventHandler = std::function<void(const DevToolsMessage &event)>;
    /// Gets the command's result; not called when the command failed.
    using ReplyHandler = std::function<void(const QJsonObject &result)>;

    /// The child is borrowed and must outlive the connection.
    DevToolsConnection(platform::GuardedChild &child, EventHandler onEvent);

    void send(const QString &method, const QJsonObject &parameters = {},
              const QString &session = {}, ReplyHandler onReply = {});

    /// Waits up to `limit` for something to come and hands it over. False once the browser is gone,
    /// or has said more than any page has reason to.
    [[nodiscard]] bool pump(std::chrono::milliseconds limit);

private:
    void take(const QByteArray &text);

    platform::GuardedChild &m_child;
    EventHandler m_onEvent;
    std::map<int, ReplyHandler> m_replies;
    int m_lastId = 0;
    QByteArray m_pending;
    bool m_isBroken = false;
};

} // namespace tollivar::capture
