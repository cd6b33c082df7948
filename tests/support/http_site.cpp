#include "tests/support/http_site.h"

#include <QByteArrayList>

#include <gtest/gtest.h>

#include <algorithm>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tollivar::test {

namespace {

constexpr int kWaitStepMs = 20;
constexpr qsizetype kMaximumRequest = 1024 * 1024;

QByteArray pathOf(const QByteArray &request)
{
    const auto words = request.left(std::max<qsizetype>(request.indexOf('\r'), 0)).split(' ');
    return words.size() < 2 ? QByteArray() : words[1];
}

QByteArray headWithLength(qint64 length, const QByteArray &mediaType)
{
    return "HTTP/1.1 200 OK\r\nContent-Type: " + mediaType +
           "\r\nContent-Length: " + QByteArray::number(length) + "\r\n\r\n";
}

} // namespace

HttpPeer::HttpPeer(int handle, const std::atomic<bool> &isClosing)
    : m_handle(handle)
    , m_isClosing(isClosing)
{
}

bool HttpPeer::readRequest()
{
    char buffer[4096];
    while (!m_request.contains("\r\n\r\n") && m_request.size() < kMaximumRequest) {
        const ssize_t count = recv(m_handle, buffer, sizeof(buffer), 0);
        if (count <= 0) {
            return false;
        }
        m_request.append(buffer, count);
    }
    return true;
}

bool HttpPeer::send(const QByteArray &bytes) const
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::send(m_handle, bytes.data() + done,
                                     static_cast<std::size_t>(bytes.size() - done), MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        done += count;
    }
    return true;
}

void HttpPeer::stall() const
{
    while (!m_isClosing) {
        pollfd wait = {m_handle, POLLIN | POLLRDHUP, 0};
        if (poll(&wait, 1, kWaitStepMs) > 0) {
            return; // The client left, or said something nobody asked for.
        }
    }
}

HttpSite::HttpSite()
{
    m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    socklen_t length = sizeof(address);
    EXPECT_EQ(bind(m_listener, generic, length), 0);
    EXPECT_EQ(listen(m_listener, 256), 0);
    EXPECT_EQ(getsockname(m_listener, generic, &length), 0);
    m_port = ntohs(address.sin_port);
    m_acceptor = std::thread([this] { accept(); });
}

HttpSite::~HttpSite()
{
    m_isClosing = true;
    m_acceptor.join();
    close(m_listener);
    {
        const std::lock_guard lock(m_mutex);
        for (const int handle : m_open) {
            shutdown(handle, SHUT_RDWR);
        }
    }
    for (std::thread &thread : m_threads) {
        thread.join();
    }
}

void HttpSite::on(const QByteArray &path, Script script)
{
    const std::lock_guard lock(m_mutex);
    m_scripts[path] = std::move(script);
}

QString HttpSite::address(const QByteArray &path) const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(m_port) + QString::fromUtf8(path);
}

std::vector<QByteArray> HttpSite::requests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

void HttpSite::waitForRequests(std::size_t count) const
{
    std::unique_lock lock(m_mutex);
    EXPECT_TRUE(m_changed.wait_for(lock, std::chrono::seconds(30),
                                   [&] { return m_requests.size() >= count; }));
}

void HttpSite::accept()
{
    while (!m_isClosing) {
        pollfd wait = {m_listener, POLLIN, 0};
        if (poll(&wait, 1, kWaitStepMs) <= 0) {
            continue;
        }
        const int handle = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (handle >= 0) {
            const std::lock_guard lock(m_mutex);
            m_open.push_back(handle);
            m_threads.emplace_back([this, handle] { serve(handle); });
        }
    }
}

void HttpSite::serve(int handle)
{
    HttpPeer peer(handle, m_isClosing);
    if (peer.readRequest()) {
        Script script = answerStatus("404 Not Found");
        {
            const std::lock_guard lock(m_mutex);
            m_requests.push_back(peer.request());
            const auto found = m_scripts.find(pathOf(peer.request()));
            if (found != m_scripts.end()) {
                script = found->second;
            }
        }
        m_changed.notify_all();
        script(peer);
    }
    const std::lock_guard lock(m_mutex);
    m_open.erase(std::find(m_open.begin(), m_open.end(), handle));
    close(handle);
}

HttpSite::Script answer(const QByteArray &body, const QByteArray &mediaType)
{
    return [body, mediaType](HttpPeer &peer) {
        peer.send(headWithLength(body.size(), mediaType) + body);
    };
}

HttpSite::Script answerStatus(const QByteArray &status, const QByteArray &moreHeaders)
{
    return [status, moreHeaders](HttpPeer &peer) {
        peer.send("HTTP/1.1 " + status + "\r\n" + moreHeaders + "Content-Length: 0\r\n\r\n");
    };
}

HttpSite::Script answerWithoutLength(const QByteArray &body)
{
    return [body](HttpPeer &peer) {
        peer.send("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + body);
    };
}

HttpSite::Script answerCut(const QByteArray &body, qint64 length)
{
    return
        [body, length](HttpPeer &peer) { peer.send(headWithLength(length, "video/mp4") + body); };
}

HttpSite::Script answerStalled(const QByteArray &body, qint64 length)
{
    return [body, length](HttpPeer &peer) {
        peer.send(headWithLength(length, "video/mp4") + body);
        peer.stall();
    };
}

HttpSite::Script neverAnswer()
{
    return [](HttpPeer &peer) { peer.stall(); };
}

} // namespace tollivar::test
