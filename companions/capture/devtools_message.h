#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <optional>

namespace tollivar::capture {

/// One message of the browser, checked: a command's reply or an event.
struct DevToolsMessage {
    int id = 0;          ///< of the command it answers; 0 for an event
    QString method;      ///< of the event
    QString session;     ///< empty for the browser itself
    QJsonObject content; ///< an event's parameters, or a command's result; empty when it failed
};

/// The message in one JSON text; nothing when it is none.
[[nodiscard]] std::optional<DevToolsMessage> parseDevToolsMessage(const QByteArray &text);

/// Cuts the browser's stream of bytes into messages, each ended by a NUL byte.
///
/// States: after a message longer than the limit it takes and gives nothing more.
class MessageSplitter {
public:
    explicit MessageSplitter(qsizetype maximumMessage) : m_maximum(maximumMessage) {}

    void add(const QByteArray &bytes);
    /// The next whole message without its end; nothing until one is complete.
    [[nodiscard]] std::optional<QByteArray> next();
    [[nodiscard]] bool isOverflown() const { return m_isOverflown; }

private:
    void forgetTaken();

    qsizetype m_maximum;
    QByteArray m_pending;
    qsizetype m_taken = 0;    ///< bytes of m_pending that were given out
    qsizetype m_searched = 0; ///< bytes of m_pending known to hold no end behind m_taken
    bool m_isOverflown = false;
};

} // namespace tollivar::capture
