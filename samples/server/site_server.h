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

/// The sample site: serves a folder of pages and one of media on the loopback interface, with a few
/// pages that no folder can hold (a redirect, one that never ends, one that asks for a cookie).
/// Made for demonstrations and tests; nothing else may be served with it.
///
/// Threads: the thread that made it, with an event loop.
class SiteServer final : public QTcpServer {
    Q_OBJECT

public:
    SiteServer(QString pagesFolder, QString mediaFolder);

    /// Listens on a free port, or on `port`. False when it cannot.
    [[nodiscard]] bool start(quint16 port = 0);
    /// "http://127.0.0.1:PORT/"
    [[nodiscard]] QByteArray address() const;

private:
    void welcome();
    void read(class QTcpSocket *peer);
    void answer(QTcpSocket *peer, const SiteRequest &request);
    void answerPage(QTcpSocket *peer, const SiteRequest &request);
    void answerMedia(QTcpSocket *peer, const SiteRequest &request, const QString &name);

    QString m_pagesFolder;
    QString m_mediaFolder;
};

} // namespace tollivar::samples
