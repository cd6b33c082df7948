#include "tests/support/desktop_session.h"

#include "tests/support/wait_until.h"

#include <QDir>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <csignal>

#include <sys/prctl.h>

namespace tollivar::test {

namespace {

constexpr int kLimitMs = 60'000;

/// Starts a program that ends with the test, however that ends.
void start(QProcess &process, const QString &program, const QStringList &arguments)
{
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForStarted()) << program.toStdString() << " is not installed";
}

} // namespace

DesktopSession::DesktopSession(const Sandbox &sandbox)
    : m_oldDisplay(qgetenv("DISPLAY"))
    , m_oldPlatform(qgetenv("QT_QPA_PLATFORM"))
{
    // The server chooses a free number itself and tells it.
    start(m_server, QStringLiteral("Xvfb"),
          {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
           QStringLiteral("0"), QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"),
           QStringLiteral("tcp")});
    EXPECT_TRUE(m_server.waitForReadyRead(kLimitMs));
    qputenv("DISPLAY", ":" + m_server.readLine().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), sandbox.path());
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), sandbox.path());
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), sandbox.path());
    m_manager.setProcessEnvironment(environment);
    start(m_manager, QStringLiteral("openbox"), {});
    waitUntil("the window manager",
              [this] { return !ask({QStringLiteral("get_num_desktops")}).isEmpty(); });
}

DesktopSession::~DesktopSession()
{
    for (QProcess *process : {&m_manager, &m_server}) {
        process->kill();
        process->waitForFinished();
    }
    qputenv("DISPLAY", m_oldDisplay);
    qputenv("QT_QPA_PLATFORM", m_oldPlatform);
}

QByteArray DesktopSession::ask(const QStringList &arguments) const
{
    QProcess tool;
    tool.start(QStringLiteral("xdotool"), arguments);
    EXPECT_TRUE(tool.waitForFinished(kLimitMs)) << arguments.join(u' ').toStdString();
    return tool.exitCode() == 0 ? tool.readAllStandardOutput().trimmed() : QByteArray();
}

void DesktopSession::act(const QStringList &arguments) const
{
    static_cast<void>(ask(arguments));
}

QString DesktopSession::window(const QString &title) const
{
    const QByteArray found = ask({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                  QStringLiteral("--name"), title});
    return QString::fromLatin1(found.split('\n').front());
}

QString DesktopSession::waitForWindow(const QString &title) const
{
    QString found;
    waitUntil(qPrintable(title), [&] {
        found = window(title);
        return !found.isEmpty();
    });
    return found;
}

void DesktopSession::press(const QString &window, const QString &keys) const
{
    act({QStringLiteral("windowactivate"), QStringLiteral("--sync"), window, QStringLiteral("key"),
         keys});
}

} // namespace tollivar::test
