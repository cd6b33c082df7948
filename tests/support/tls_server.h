#pragma once

#include "platform/child_process.h"
#include "tests/support/sandbox.h"

#include <QString>

#include <memory>

namespace tollivar::test {

/// A web server that speaks TLS on a free port of the loopback interface, with a certificate made
/// for it a moment ago, which no authority has signed. It answers every request with 200.
///
/// Threads: the test's.
/// Owns:    the server and its folder.
class TlsServer {
public:
    TlsServer();
    ~TlsServer();
    TlsServer(const TlsServer &) = delete;
    TlsServer &operator=(const TlsServer &) = delete;

    /// "127.0.0.1:PORT"
    [[nodiscard]] QString authority() const;
    /// The certificate's file, for a client that shall trust it.
    [[nodiscard]] QString certificate() const;

private:
    Sandbox m_sandbox;
    std::unique_ptr<platform::ChildProcess> m_server;
    quint16 m_port = 0;
};

} // namespace tollivar::test
