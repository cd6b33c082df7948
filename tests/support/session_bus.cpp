#include "tests/support/session_bus.h"

#include <gtest/gtest.h>

#include <csignal>

#include <sys/prctl.h>

namespace tollivar::test {

namespace {

constexpr int kLimitMs = 60'000;
constexpr auto kVariable = "DBUS_SESSION_BUS_ADDRESS";

/// The system's own file would bring the services that are installed on the machine.
constexpr auto kConfiguration = R"(<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <policy context="default">
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

} // namespace

SessionBus::SessionBus() : m_oldAddress(qgetenv(kVariable))
{
    const QString configuration = m_sandbox.write(QStringLiteral("bus.conf"), kConfiguration);
    m_daemon.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_daemon.setStandardErrorFile(QProcess::nullDevice());
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--config-file=") + configuration, QStringLiteral("--nofork"),
                    QStringLiteral("--nosyslog"), QStringLiteral("--print-address=1")});
    EXPECT_TRUE(m_daemon.waitForStarted()) << "dbus-daemon is not installed";
    while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead(kLimitMs)) {
    }
    m_address = QString::fromLatin1(m_daemon.readLine().trimmed());
    EXPECT_FALSE(m_address.isEmpty());
    qputenv(kVariable, m_address.toLatin1());
}

SessionBus::~SessionBus()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
    if (m_oldAddress.isEmpty()) {
        qunsetenv(kVariable);
    } else {
        qputenv(kVariable, m_oldAddress);
    }
}

} // namespace tollivar::test
