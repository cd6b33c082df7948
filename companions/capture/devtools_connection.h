#pragma once

#include "companions/capture/devtools_message.h"
#include "platform/guarded_child.h"

#include <QJsonObject>
#include <QString>

#include <chrono>
#include <functional>
#include <map>

namespace tollivar::capture {

/// Commands and events over the browser's DevTools pipe.
///
/// Threads: one thread; handlers run inside pump() and may send.
class DevToolsConnection {
public:
    using EventHandler = std::function<void(const DevToolsMessage &event)>;
    /// Gets the command's result; empty when the command failed.
    using ReplyHandler = std::function<void(const QJsonObject &result)>;

    /// The child is borrowed and must outlive the connection.
    DevToolsConnection(platform::GuardedChild &child, EventHandler onEvent);

    /// Blocks for milliseconds when the browser is slow to read, up to two seconds, after which it
    /// counts as gone.
    void send(const QString &method, const QJsonObject &parameters = {},
              const QString &session = {}, ReplyHandler onReply = {});

    /// Waits up to `limit` for something to come and hands it over. False once the browser is gone,
    /// deaf, or says more than any page has reason to.
    [[nodiscard]] bool pump(std::chrono::milliseconds limit);

private:
    void take(const QByteArray &text);

    platform::GuardedChild &m_child;
    EventHandler m_onEvent;
    std::map<int, ReplyHandler> m_replies;
    int m_lastId = 0;
    MessageSplitter m_messages;
    bool m_isBroken = false;
};

} // namespace tollivar::capture
