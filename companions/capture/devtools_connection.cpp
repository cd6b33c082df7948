#include "companions/capture/devtools_connection.h"

#include <QJsonDocument>

namespace tollivar::capture {

namespace {

constexpr qsizetype kMaximumMessage = 64 * 1024 * 1024;
constexpr std::chrono::milliseconds kWriteLimit{2'000};

} // namespace

std::optional<DevToolsMessage> parseDevToolsMessage(const QByteArray &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject()) {
        return std::nullopt;
    }
    const QJsonObject object = document.object();
    DevToolsMessage message{.id = object[u"id"].toInt(),
                            .method = object[u"method"].toString(),
                            .session = object[u"sessionId"].toString(),
                            .content = {},
                            .isError = object.contains(u"error")};
    if (message.id <= 0 && message.method.isEmpty()) {
        return std::nullopt;
    }
    message.content = object[message.id > 0 ? u"result" : u"params"].toObject();
    return message;
}

DevToolsConnection::DevToolsConnection(platform::GuardedChild &child, EventHandler onEvent)
    : m_child(child)
    , m_onEvent(std::move(onEvent))
{
}

void DevToolsConnection::send(const QString &method, const QJsonObject &parameters,
                              const QString &session, ReplyHandler onReply)
{
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
    m_isBroken = m_isBroken || !m_child.write(text + '\0', kWriteLimit);
}

bool DevToolsConnection::pump(std::chrono::milliseconds limit)
{
    m_pending += m_child.read(limit);
    qsizetype begin = 0;
    for (qsizetype end = m_pending.indexOf('\0'); end >= 0; end = m_pending.indexOf('\0', begin)) {
        take(m_pending.mid(begin, end - begin));
        begin = end + 1;
    }
    m_pending.remove(0, begin);
    return !m_isBroken && !m_child.isGone() && m_pending.size() <= kMaximumMessage;
}

void DevToolsConnection::take(const QByteArray &text)
{
    const auto message = parseDevToolsMessage(text);
    if (!message) {
        return;
    }
    if (message->id == 0) {
        m_onEvent(*message);
        return;
    }
    auto reply = m_replies.extract(message->id);
    if (!reply.empty() && !message->isError) {
        reply.mapped()(message->content);
    }
}

} // namespace tollivar::capture
