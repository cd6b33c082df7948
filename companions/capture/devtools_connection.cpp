#include "companions/capture/devtools_connection.h"

#include <QJsonDocument>

namespace tollivar::capture {

namespace {

/// A page may send long addresses and long headers; nothing that we ask for is longer than this.
constexpr qsizetype kMaximumMessage = 16LL * 1024 * 1024;
constexpr std::chrono::milliseconds kWriteLimit{2'000};

} // namespace

DevToolsConnection::DevToolsConnection(platform::GuardedChild &child, EventHandler onEvent)
    : m_child(child)
    , m_onEvent(std::move(onEvent))
    , m_messages(kMaximumMessage)
{
}

void DevToolsConnection::send(const QString &method, const QJsonObject &parameters,
                              const QString &session, ReplyHandler onReply)
{
    if (m_isBroken) {
        return;
    }
    const int id = ++m_lastId;
    QJsonObject command{{QStringLiteral("id"), id}, {QStringLiteral("method"), method}};
    if (!parameters.isEmpty()) {
        command.insert(QStringLiteral("params"), parameters);
    }
    if (!session.isEmpty()) {
        command.insert(QStringLiteral("sessionId"), session);
    }
    if (onReply) {
        m_replies.emplace(id, std::move(onReply));
    }
    const QByteArray text = QJsonDocument(command).toJson(QJsonDocument::Compact);
    m_isBroken = !m_child.write(text + '\0', kWriteLimit);
}

bool DevToolsConnection::pump(std::chrono::milliseconds limit)
{
    m_messages.add(m_child.read(limit));
    while (const auto text = m_messages.next()) {
        take(*text);
    }
    return !m_isBroken && !m_messages.isOverflown() && !m_child.isGone();
}

void DevToolsConnection::take(const QByteArray &text)
{
    const auto message = parseDevToolsMessage(text);
    if (!message) {
        return;
    }
    if (message->id == 0) {
        m_onEvent(*message);
    } else if (auto reply = m_replies.extract(message->id); !reply.empty()) {
        reply.mapped()(message->content);
    }
}

} // namespace tollivar::capture
