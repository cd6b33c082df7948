#include "samples/server/site_server.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTcpSocket>
#include <QTimer>

#include <optional>

namespace tollivar::samples {

namespace {

constexpr qint64 kMaximumRequest = 64LL * 1024;
constexpr int kSlicesPerSecond = 20;
/// What the script page sets and the protected clip asks for.
constexpr const char *kCookie = "pass=open-sesame";

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
    const bool leadsElsewhere = name.contains(u'/') || name.contains(u'\\') ||
                                name.contains(u':') || name.contains(QChar::Null) ||
                                name.startsWith(u'.');
    if (name.isEmpty() || leadsElsewhere) {
        return std::nullopt;
    }
    QFile file(folder + QLatin1Char('/') + name);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return file.readAll();
}

SiteAnswer plain(const QByteArray &status)
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

/// Whether the request wants one range of a file, and which; a range that the file does not have is
/// an empty one. Anything else, several ranges too, may be answered with the whole.
std::optional<Range> rangeOf(const SiteRequest &request, qsizetype size)
{
    const QByteArray value = request.headers.value("range");
    const qsizetype dash = value.indexOf('-');
    if (!value.startsWith("bytes=") || dash < 0 || value.contains(',')) {
        return std::nullopt;
    }
    const QByteArray begin = value.mid(6, dash - 6);
    const QByteArray end = value.mid(dash + 1);
    bool isFirst = false;
    bool isLast = false;
    const qsizetype first = begin.toLongLong(&isFirst);
    const qsizetype last = end.toLongLong(&isLast);
    if (begin.isEmpty() && isLast && last >= 0) {
        return last > 0 ? Range{std::max<qsizetype>(size - last, 0), size - 1} : Range{0, -1};
    }
    if (!isFirst || first < 0 || !(isLast || end.isEmpty()) || (isLast && last < first)) {
        return std::nullopt;
    }
    return first < size ? Range{first, isLast ? std::min(last, size - 1) : size - 1} : Range{0, -1};
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
        if (colon > 0) {
            request.headers.insert(line.left(colon).trimmed().toLower(),
                                   line.mid(colon + 1).trimmed());
        }
    }
    return request;
}

} // namespace

SiteServer::SiteServer(SiteOptions options) : m_options(std::move(options))
{
    connect(this, &QTcpServer::newConnection, this, &SiteServer::welcome);
}

bool SiteServer::start()
{
    return listen(QHostAddress::LocalHost, m_options.port);
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
    } else if (request.path.startsWith("/no-head/")) {
        // Some servers know no other question than GET.
        if (request.method == "HEAD") {
            send(peer, request, plain("405 Method Not Allowed"));
        } else {
            answerMedia(peer, request, QString::fromUtf8(request.path.mid(9)));
        }
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
    auto content = contentOf(m_options.pagesFolder, name);
    if (!content) {
        send(peer, request, plain("404 Not Found"));
        return;
    }
    // The frame of another host is the same server under its other name.
    content->replace("@OTHER_HOST@", "http://localhost:" + QByteArray::number(serverPort()));
    SiteAnswer answer{.status = "200 OK", .type = typeOf(name), .headers = {}, .body = *content};
    if (name == u"scripted.html") {
        answer.headers.append(QByteArray("Set-Cookie: ") + kCookie + "; HttpOnly; Path=/");
    }
    send(peer, request, answer);
}

void SiteServer::answerMedia(QTcpSocket *peer, const SiteRequest &request, const QString &name)
{
    const auto content = contentOf(m_options.mediaFolder, name);
    if (!content) {
        send(peer, request, plain("404 Not Found"));
        return;
    }
    SiteAnswer answer{.status = "200 OK",
                      .type = typeOf(name),
                      .headers = {"Accept-Ranges: bytes"},
                      .body = *content};
    if (const auto range = rangeOf(request, content->size()); range && range->last < 0) {
        answer = plain("416 Range Not Satisfiable");
    } else if (range) {
        answer.status = "206 Partial Content";
        answer.headers.append("Content-Range: bytes " + QByteArray::number(range->first) + "-" +
                              QByteArray::number(range->last) + "/" +
                              QByteArray::number(content->size()));
        answer.body = content->mid(range->first, range->last - range->first + 1);
    }
    send(peer, request, answer);
}

void SiteServer::send(QTcpSocket *peer, const SiteRequest &request, const SiteAnswer &answer) const
{
    QByteArray head = "HTTP/1.1 " + answer.status + "\r\nContent-Type: " + answer.type +
                      "\r\nContent-Length: " + QByteArray::number(answer.body.size()) +
                      "\r\nConnection: close\r\n";
    for (const QByteArray &header : answer.headers) {
        head += header + "\r\n";
    }
    peer->write(head + "\r\n");
    if (request.method == "HEAD") {
        peer->disconnectFromHost();
    } else if (m_options.bytesPerSecond > 0) {
        sendSlowly(peer, answer.body);
    } else {
        peer->write(answer.body);
        peer->disconnectFromHost();
    }
}

void SiteServer::sendSlowly(QTcpSocket *peer, const QByteArray &body) const
{
    const qint64 slice = std::max<qint64>(m_options.bytesPerSecond / kSlicesPerSecond, 1);
    auto *const timer = new QTimer(peer);
    connect(timer, &QTimer::timeout, peer,
            [peer, timer, body, slice, place = qsizetype(0)]() mutable {
                peer->write(body.mid(place, slice));
                place += slice;
                if (place >= body.size()) {
                    timer->stop();
                    peer->disconnectFromHost();
                }
            });
    timer->start(1000 / kSlicesPerSecond);
}

} // namespace tollivar::samples
