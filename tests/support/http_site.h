#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace tollivar::test {

/// One connection as a script sees it.
class HttpPeer {
public:
    HttpPeer(int handle, const std::atomic<bool> &isClosing);

    /// What the client asked, up to the empty line.
    [[nodiscard]] const QByteArray &request() const { return m_request; }
    /// False once the client is gone.
    bool send(const QByteArray &bytes) const;
    /// Keeps the connection open and silent until the client leaves or the site closes.
    void stall() const;

private:
    friend class HttpSite;
    [[nodiscard]] bool readRequest();

    int m_handle;
    const std::atomic<bool> &m_isClosing;
    QByteArray m_request;
};

/// A web server on a free port of the loopback interface, each path played by a script.
///
/// Threads: scripts run on threads of the site; everything else belongs to the test.
/// Owns:    its threads and sockets; the destructor cuts every connection and waits.
class HttpSite {
public:
    using Script = std::function<void(HttpPeer &peer)>;

    HttpSite();
    ~HttpSite();
    HttpSite(const HttpSite &) = delete;
    HttpSite &operator=(const HttpSite &) = delete;

    /// Plays `script` for requests of that path; others are answered 404.
    void on(const QByteArray &path, Script script);

    /// "http://127.0.0.1:PORT" + path
    [[nodiscard]] QString address(const QByteArray &path) const;
    [[nodiscard]] quint16 port() const { return m_port; }
    /// Every request that came so far, as sent.
    [[nodiscard]] std::vector<QByteArray> requests() const;
    /// Waits until that many requests have come; fails the test when they do not.
    void waitForRequests(std::size_t count) const;

private:
    void accept();
    void serve(int handle);

    int m_listener = -1;
    quint16 m_port = 0;
    std::atomic<bool> m_isClosing = false;
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    std::map<QByteArray, Script> m_scripts;
    std::vector<QByteArray> m_requests;
    std::vector<int> m_open;
    std::vector<std::thread> m_threads;
    std::thread m_acceptor;
};

/// Scripts that many tests need.

/// 200 with a length and the body.
[[nodiscard]] HttpSite::Script answer(const QByteArray &body,
                                      const QByteArray &mediaType = "video/mp4");
/// The status alone, with an empty body.
[[nodiscard]] HttpSite::Script answerStatus(const QByteArray &status,
                                            const QByteArray &moreHeaders = {});
/// 200 without a length; the end of the connection ends the body.
[[nodiscard]] HttpSite::Script answerWithoutLength(const QByteArray &body);
/// Announces `length` bytes, sends `body`, and cuts the connection.
[[nodiscard]] HttpSite::Script answerCut(const QByteArray &body, qint64 length);
/// Announces `length` bytes, sends `body`, and falls silent.
[[nodiscard]] HttpSite::Script answerStalled(const QByteArray &body, qint64 length);
/// Takes the request and never answers.
[[nodiscard]] HttpSite::Script neverAnswer();

} // namespace tollivar::test
