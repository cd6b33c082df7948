#pragma once

#include "platform/auto_reset_event.h"
#include "platform/result.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <memory>

namespace tollivar::platform {

/// One connected stream of bytes, for a library that brings its own protocol: the library gets the
/// socket, and we keep the means to wake it out of a blocked call.
///
/// Threads: wake() may be called from any thread, everything else from one.
/// Owns:    the socket until release(), and always a second handle of it.
class TcpConnection {
public:
    /// Looks the host up and connects, each of its addresses in turn, for `limit` at most. Returns
    /// within milliseconds once `stop` is set, whatever the network does.
    /// Errors: TryAgain when there is no connection, for whatever reason, also when stopped.
    [[nodiscard]] static Result<std::unique_ptr<TcpConnection>>
    connect(const QString &host, std::uint16_t port, std::chrono::milliseconds limit,
            AutoResetEvent &stop);
    ~TcpConnection();
    TcpConnection(const TcpConnection &) = delete;
    TcpConnection &operator=(const TcpConnection &) = delete;

    /// A read or write that blocks longer than this fails.
    void setTimeLimit(std::chrono::milliseconds limit);
    /// The socket, now the caller's to close.
    [[nodiscard]] std::intptr_t release();
    /// Ends what is blocked on the socket, and every later use of it, at once.
    void wake();

private:
    struct Private;
    explicit TcpConnection(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};

/// From now on a write to a connection that the other side has closed fails on this thread, instead
/// of ending the process.
void ignoreBrokenConnections();

} // namespace tollivar::platform
