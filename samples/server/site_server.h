#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QTcpServer>

namespace tollivar::samples {

/// One request, as far as the sample site looks at it.
struct SiteRequest {
    QByteArray method;
    QByteArray path;                      ///< percent-decoded, without the query
    QMap<QByteArray, QByteArray> headers; ///< names in lower case
};

struct SiteAnswer {
    QByteArray status = "200 OK";
    QByteArray type = "text/html; charset=utf-8";
    QList<QByteArray> headers;
    QByteArray body;
};

struct SiteOptions {
    QString pagesFolder;
    QString mediaFolder;
    quint16 port = 0;          ///< 0 takes a free one
    qint64 bytesPerSecond = 0; ///< of each answer; 0 is as fast as it goes
};

/// The sample site: serves a folder of pages and one of media on the loopback interface, with a few
/// answers that no folder can hold (a redirect, one that never ends, one that asks for a cookie).
/// Made for demonstrations and tests; nothing else may be served with it.
///
/// Threads: the thread that made it, with an event loop.
class SiteServer final : public QTcpServer {
    Q_OBJECT

public:
    explicit SiteServer(SiteOptions options);

    /// False when the port is taken.
    [[nodiscard]] bool start();
    /// "http://127.0.0.1:PORT/"
    [[nodiscard]] QByteArray address() const;

private:
    void welcome();
    void read(class QTcpSocket *peer);
    void answer(QTcpSocket *peer, const SiteRequest &request);
    void answerPage(QTcpSocket *peer, const SiteRequest &request);
    void answerMedia(QTcpSocket *peer, const SiteRequest &request, const QString &name);
    void send(QTcpSocket *peer, const SiteRequest &request, const SiteAnswer &answer) const;
    void sendSlowly(QTcpSocket *peer, const QByteArray &body) const;

    SiteOptions m_options;
};

} // namespace tollivar::samples
