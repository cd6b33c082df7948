#include "tests/support/raw_server.h"

#include "tests/support/wait_until.h"

#include <QFile>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tollivar::test {

namespace {

struct Listener {
    int handle = -1;
    quint16 port = 0;
};

Listener listenOnLoopback()
{
    Listener listener;
    listener.handle = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto *where = reinterpret_cast<sockaddr *>(&address);
    socklen_t size = sizeof address;
    EXPECT_EQ(::bind(listener.handle, where, size), 0);
    EXPECT_EQ(::listen(listener.handle, SOMAXCONN), 0);
    EXPECT_EQ(::getsockname(listener.handle, where, &size), 0);
    listener.port = ntohs(address.sin_port);
    return listener;
}

/// How many connections to that port are asked for and not answered.
qsizetype unansweredAttempts(quint16 port)
{
    QFile table(QStringLiteral("/proc/net/tcp"));
    EXPECT_TRUE(table.open(QIODevice::ReadOnly));
    constexpr int kHexadecimal = 16;
    // The remote end, and the state "SYN sent".
    const QByteArray wanted =
        ':' + QByteArray::number(port, kHexadecimal).toUpper().rightJustified(4, '0') + " 02 ";
    return table.readAll().count(wanted);
}

} // namespace

quint16 freePort()
{
    const Listener listener = listenOnLoopback();
    ::close(listener.handle);
    return listener.port;
}

int connectToLoopback(quint16 port)
{
    const int handle = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(handle, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    return handle;
}

void endConnection(int handle)
{
    ::shutdown(handle, SHUT_RDWR);
}

void closeConnection(int handle)
{
    ::close(handle);
}

FullPort::FullPort()
{
    const Listener listener = listenOnLoopback();
    m_port = listener.port;
    m_handles.push_back(listener.handle);
    // The shortest queue there is; what fits in is filled with connections that nobody accepts.
    ::listen(listener.handle, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(m_port);
    constexpr int kEnough = 8;
    for (int i = 0; i < kEnough; ++i) {
        const int handle = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        ::connect(handle, reinterpret_cast<sockaddr *>(&address), sizeof address);
        m_handles.push_back(handle);
    }
    m_ownAttempts = unansweredAttempts(m_port);
}

void FullPort::waitForAttempt() const
{
    waitUntil("somebody to connect", [this] { return unansweredAttempts(m_port) > m_ownAttempts; });
}

FullPort::~FullPort()
{
    for (const int handle : m_handles) {
        ::close(handle);
    }
}

bool RawServer::Peer::send(const QByteArray &bytes) const
{
    qsizetype sent = 0;
    while (sent < bytes.size()) {
        const auto count = ::send(m_handle, bytes.constData() + sent,
                                  static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        sent += count;
    }
    return true;
}

QByteArray RawServer::Peer::receive(int limit) const
{
    QByteArray bytes(limit, Qt::Uninitialized);
    const auto count = ::recv(m_handle, bytes.data(), static_cast<std::size_t>(limit), 0);
    return bytes.left(std::max<qsizetype>(count, 0));
}

bool RawServer::Peer::receiveAll(int count) const
{
    while (count > 0) {
        const QByteArray bytes = receive(count);
        if (bytes.isEmpty()) {
            return false;
        }
        count -= static_cast<int>(bytes.size());
    }
    return true;
}

void RawServer::Peer::stall() const
{
    constexpr int kPiece = 4'096;
    while (!receive(kPiece).isEmpty()) {
    }
}

RawServer::RawServer(std::function<void(const Peer &)> script) : m_script(std::move(script))
{
    const Listener listener = listenOnLoopback();
    m_listener = listener.handle;
    m_port = listener.port;
    m_acceptor = std::thread([this] { accept(); });
}

RawServer::~RawServer()
{
    m_isClosing = true;
    ::shutdown(m_listener, SHUT_RDWR);
    m_acceptor.join();
    {
        const std::lock_guard lock(m_mutex);
        for (const int handle : m_open) {
            ::shutdown(handle, SHUT_RDWR);
        }
    }
    for (std::thread &thread : m_threads) {
        thread.join();
    }
    for (const int handle : m_open) {
        ::close(handle);
    }
    ::close(m_listener);
}

void RawServer::accept()
{
    for (;;) {
        const int handle = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (handle < 0 || m_isClosing) {
            return;
        }
        ++m_connections;
        const std::lock_guard lock(m_mutex);
        m_open.push_back(handle);
        m_threads.emplace_back([this, handle] {
            m_script(Peer(handle));
            ::shutdown(handle, SHUT_RDWR);
        });
    }
}

} // namespace tollivar::test
