#pragma once

#include "tests/support/sandbox.h"

#include <QProcess>
#include <QString>

namespace tollivar::test {

/// A message bus of the test's own, on which nobody is but who connects to it. Programs that the
/// test starts meanwhile find it as their session's.
///
/// Fails the test when it does not start.
class SessionBus {
public:
    SessionBus();
    /// Ends the bus.
    ~SessionBus();
    SessionBus(const SessionBus &) = delete;
    SessionBus &operator=(const SessionBus &) = delete;

    [[nodiscard]] const QString &address() const { return m_address; }

private:
    Sandbox m_sandbox;
    QProcess m_daemon;
    QString m_address;
    QByteArray m_oldAddress;
};

} // namespace tollivar::test
