#pragma once

#include <QByteArray>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tollivar::test {

/// A port of the loopback interface that was free a moment ago.
[[nodiscard]] quint16 freePort();

/// A connection to that port of the loopback interface, for the caller to close.
[[nodiscard]] int connectToLoopback(quint16 port);
/// Ends a connection in both directions, also for who waits on it.
void endConnection(int handle);
void closeConnection(int handle);

/// A port of the loopback interface where connecting neither succeeds nor fails: the queue of those
/// that wait to be accepted is full, and stays so.
class FullPort {
public:
    FullPort();
    ~FullPort();
    FullPort(const FullPort &) = delete;
    FullPort &operator=(const FullPort &) = delete;

    [[nodiscard]] quint16 port() const { return m_port; }
    /// Waits until somebody else tries to connect; fails the test when nobody does.
    void waitForAttempt() const;

private:
    std::vector<int> m_handles;
    quint16 m_port = 0;
    qsizetype m_ownAttempts = 0;
};

/// A server that speaks no protocol: each connection is played by a script.
///
/// Threads: scripts run on threads of the server; everything else belongs to the test.
/// Owns:    its threads and sockets; the destructor cuts every connection and waits.
class RawServer {
public:
    class Peer {
    public:
        explicit Peer(int handle) : m_handle(handle) {}
        /// False once the client is gone.
        bool send(const QByteArray &bytes) const;
        /// At least one byte, at most `limit`; empty once the client is gone.
        [[nodiscard]] QByteArray receive(int limit) const;
        /// Reads until that many bytes have come; false when the client leaves before.
        [[nodiscard]] bool receiveAll(int count) const;
        /// Silent until the client leaves or the server closes.
        void stall() const;

    private:
        int m_handle;
    };

    explicit RawServer(std::function<void(const Peer &peer)> script);
    ~RawServer();
    RawServer(const RawServer &) = delete;
    RawServer &operator=(const RawServer &) = delete;

    [[nodiscard]] quint16 port() const { return m_port; }
    [[nodiscard]] int connections() const { return m_connections; }

private:
    void accept();

    std::function<void(const Peer &)> m_script;
    int m_listener = -1;
    quint16 m_port = 0;
    std::atomic<int> m_connections = 0;
    std::mutex m_mutex;
    std::vector<int> m_open;
    std::vector<std::thread> m_threads;
    std::atomic<bool> m_isClosing = false;
    std::thread m_acceptor;
};

} // namespace tollivar::test
