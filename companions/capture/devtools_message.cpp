#include "companions/capture/devtools_message.h"

#include <QJsonDocument>

namespace tollivar::capture {

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
                            .content = {}};
    const bool isReply = object.contains(u"id");
    if (isReply ? message.id <= 0 : message.method.isEmpty()) {
        return std::nullopt;
    }
    message.content = object[isReply ? u"result" : u"params"].toObject();
    return message;
}

void MessageSplitter::add(const QByteArray &bytes)
{
    if (m_isOverflown) {
        return;
    }
    forgetTaken();
    m_pending += bytes;
}

std::optional<QByteArray> MessageSplitter::next()
{
    const qsizetype end = m_pending.indexOf('\0', m_searched);
    const qsizetype length = (end < 0 ? m_pending.size() : end) - m_taken;
    if (length > m_maximum) {
        m_isOverflown = true;
        m_pending.clear();
        m_taken = m_searched = 0;
        return std::nullopt;
    }
    if (end < 0) {
        // A long message comes in many pieces; none of them is searched twice.
        m_searched = m_pending.size();
        return std::nullopt;
    }
    QByteArray message = m_pending.mid(m_taken, length);
    m_taken = m_searched = end + 1;
    return message;
}

void MessageSplitter::forgetTaken()
{
    m_pending.remove(0, m_taken);
    m_searched -= m_taken;
    m_taken = 0;
}

} // namespace tollivar::capture
