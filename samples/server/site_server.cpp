#include "samples/server/site_server.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTcpSocket>

#include <optional>

namespace tollivar::samples {

namespace {

constexpr qint64 kMaximumRequest = 64LL * 1024;
/// What the script page sets and the protected clip asks for.
constexpr const char *kCookie = "pass=open-sesame";

struct Answer {
    QByteArray status = "200 OK";
    QByteArray type = "text/html; charset=utf-8";
    QList<QByteArray> headers;
    QByteArray body;
};

QByteArray typeOf(const QString &path)
{
    static const QMap<QString, QByteArray> types = {
        {QStringLiteral("html"), "text/html; charset=utf-8"},
        {QStringLiteral("css"), "text/css"},
        {QStringLiteral("js"), "text/javascript"},
        {QStringLiteral("mp4"), "video/mp4"},
        {QStringLiteral("webm"), "video/webm"},
        {QStringLiteral("flv"), "video/x-flv"},
        {QStringLiteral("swf"), "application/x-shockwave-flash"},
        {QStringLiteral("mp3"), "audio/mpeg"},
        {QStringLiteral("png"), "image/png"},
        {QStringLiteral("gif"), "image/gif"},
    };
    return types.value(QFileInfo(path).suffix().toLower(), "application/octet-stream");
}

/// The file of that name in the folder itself; nothing that leads elsewhere.
std::optional<QByteArray> contentOf(const QString &folder, const QString &name)
{
    if (name.isEmpty() || name.contains(u'/') || name.startsWith(u'.')) {
        return std::nullopt;
    }
    QFile file(folder + QLatin1Char('/') + name);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return file.readAll();
}

void send(QTcpSocket *peer, const SiteRequest &request, const Answer &answer)
{
    QByteArray head = "HTTP/1.1 " + answer.status + "\r\nContent-Type: " + answer.type +
                      "\r\nContent-Length: " + QByteArray::number(answer.body.size()) +
                      "\r\nConnection: close\r\n";
    for (const QByteArray &header : answer.headers) {
        head += header + "\r\n";
    }
    peer->write(head + "\r\n");
    if (request.method != "HEAD") {
        peer->write(answer.body);
    }
    peer->disconnectFromHost();
}

Answer plain(const QByteArray &status)
{
    return {.status = status,
            .type = "text/html; charset=utf-8",
            .headers = {},
            .body = "<!DOCTYPE html><title>" + status + "</title><h1>" + status + "</h1>"};
}

struct Range {
    qsizetype first = 0;
    qsizetype last = 0;
};

/// The one range that was asked for; nothing when the whole is wanted.
std::optional<Range> rangeOf(const SiteRequest &request, qsizetype size)
{
    const QByteArray value = request.headers.value("range");
    const qsizetype dash = value.indexOf('-');
    if (!value.startsWith("bytes=") || dash < 0 || value.contains(',') || size == 0) {
        return std::nullopt;
    }
    const qsizetype first = value.mid(6, dash - 6).toLongLong();
    const QByteArray end = value.mid(dash + 1);
    const qsizetype last =
        end.isEmpty() ? size - 1 : std::min<qsizetype>(end.toLongLong(), size - 1);
    if (first < 0 || first > last) {
        return std::nullopt;
    }
    return Range{first, last};
}

std::optional<SiteRequest> parseRequest(const QByteArray &text)
{
    const QList<QByteArray> lines = text.left(text.indexOf("\r\n\r\n")).split('\n');
    const QList<QByteArray> words = lines.front().trimmed().split(' ');
    if (words.size() != 3 || (words[0] != "GET" && words[0] != "HEAD")) {
        return std::nullopt;
    }
    SiteRequest request;
    request.method = words[0];
    request.path = QByteArray::fromPercentEncoding(words[1].split('?').front());
    for (const QByteArray &line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.left(colon).trimmed().toLower(), line.mid(colon + 1).trimmed());
    }
    return request;
}

} // namespace

SiteServer::SiteServer(QString pagesFolder, QString mediaFolder)
    : m_pagesFolder(std::move(pagesFolder))
    , m_mediaFolder(std::move(mediaFolder))
{
    connect(this, &QTcpServer::newConnection, this, &SiteServer::welcome);
}

bool SiteServer::start(quint16 port)
{
    return listen(QHostAddress::LocalHost, port);
}

QByteArray SiteServer::address() const
{
    return "http://127.0.0.1:" + QByteArray::number(serverPort()) + "/";
}

void SiteServer::welcome()
{
    while (QTcpSocket *const peer = nextPendingConnection()) {
        connect(peer, &QTcpSocket::readyRead, this, [this, peer] { read(peer); });
        connect(peer, &QTcpSocket::disconnected, peer, &QObject::deleteLater);
    }
}

void SiteServer::read(QTcpSocket *peer)
{
    const QByteArray text = peer->peek(kMaximumRequest);
    if (!text.contains("\r\n\r\n")) {
        if (text.size() >= kMaximumRequest) {
            peer->abort();
        }
        return;
    }
    peer->readAll();
    if (const auto request = parseRequest(text)) {
        answer(peer, *request);
    } else {
        send(peer, {}, plain("400 Bad Request"));
    }
}

void SiteServer::answer(QTcpSocket *peer, const SiteRequest &request)
{
    if (request.path == "/moved.html") {
        send(peer, request,
             {.status = "302 Found",
              .type = "text/html",
              .headers = {"Location: /video.html"},
              .body = {}});
    } else if (request.path == "/endless.gif") {
        // Headers only: the page that shows this picture never finishes loading.
        peer->write("HTTP/1.1 200 OK\r\nContent-Type: image/gif\r\nContent-Length: 100000\r\n\r\n");
    } else if (request.path.startsWith("/media/")) {
        answerMedia(peer, request, QString::fromUtf8(request.path.mid(7)));
    } else if (request.path.startsWith("/protected/")) {
        // Only the page itself knows how to ask for this one.
        const bool isAllowed = request.headers.value("cookie").contains(kCookie) &&
                               request.headers.value("referer").contains("/scripted.html");
        if (isAllowed) {
            answerMedia(peer, request, QString::fromUtf8(request.path.mid(11)));
        } else {
            send(peer, request, plain("403 Forbidden"));
        }
    } else {
        answerPage(peer, request);
    }
}

void SiteServer::answerPage(QTcpSocket *peer, const SiteRequest &request)
{
    const QString name =
        request.path == "/" ? QStringLiteral("index.html") : QString::fromUtf8(request.path.mid(1));
    auto content = contentOf(m_pagesFolder, name);
    if (!content) {
        send(peer, request, plain("404 Not Found"));
        return;
    }
    // The frame of another host is the same server under its other name.
    content->replace("@OTHER_HOST@", "http://localhost:" + QByteArray::number(serverPort()));
    Answer answer{.status = "200 OK", .type = typeOf(name), .headers = {}, .body = *content};
    if (name == u"scripted.html") {
        answer.headers.append(QByteArray("Set-Cookie: ") + kCookie + "; HttpOnly; Path=/");
    }
    send(peer, request, answer);
}

void SiteServer::answerMedia(QTcpSocket *peer, const SiteRequest &request, const QString &name)
{
    const auto content = contentOf(m_mediaFolder, name);
    if (!content) {
        send(peer, request, plain("404 Not Found"));
        return;
    }
    Answer answer{.status = "200 OK",
                  .type = typeOf(name),
                  .headers = {"Accept-Ranges: bytes"},
                  .body = *content};
    if (const auto range = rangeOf(request, content->size())) {
        answer.status = "206 Partial Content";
        answer.headers.append("Content-Range: bytes " + QByteArray::number(range->first) + "-" +
                              QByteArray::number(range->last) + "/" +
                              QByteArray::number(content->size()));
        answer.body = content->mid(range->first, range->last - range->first + 1);
    }
    send(peer, request, answer);
}

} // namespace tollivar::samples
