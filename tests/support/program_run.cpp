#include "tests/support/program_run.h"

#include "tests/support/wait_until.h"

#include <QDir>
#include <QJsonDocument>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <csignal>

namespace tollivar::test {

namespace {

/// Ends a hang; slow machines under sanitizers stay far below.
constexpr int kLimitMs = 120'000;

} // namespace

QString ProgramRun::pathOf(const QString &program)
{
    return QDir::isAbsolutePath(program) ? program
                                         : QStringLiteral(TOLLIVAR_PROGRAMS "/") + program;
}

ProgramRun::ProgramRun(const Sandbox &sandbox, const QString &program, const QStringList &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const auto place = [&](const QString &variable, const QString &folder) {
        QDir().mkpath(sandbox.file(folder));
        environment.insert(variable, sandbox.file(folder));
    };
    place(QStringLiteral("XDG_DATA_HOME"), QStringLiteral("data"));
    place(QStringLiteral("XDG_STATE_HOME"), QStringLiteral("state"));
    place(QStringLiteral("XDG_RUNTIME_DIR"), QStringLiteral("run"));
    place(QStringLiteral("XDG_DOCUMENTS_DIR"), QStringLiteral("documents"));
    m_process.setProcessEnvironment(environment);
    m_process.setWorkingDirectory(sandbox.path());
    m_process.start(pathOf(program), arguments);
    EXPECT_TRUE(m_process.waitForStarted());
}

ProgramRun::~ProgramRun()
{
    m_process.kill();
    m_process.waitForFinished();
}

int ProgramRun::finish()
{
    EXPECT_TRUE(m_process.state() == QProcess::NotRunning || m_process.waitForFinished(kLimitMs));
    collect();
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

void ProgramRun::waitForOutput(const QByteArray &text)
{
    waitUntil(
        text.constData(), [&] { return output().contains(text); },
        std::chrono::milliseconds(kLimitMs));
}

void ProgramRun::signal(int number) const
{
    ::kill(static_cast<pid_t>(m_process.processId()), number);
}

void ProgramRun::collect()
{
    m_output += m_process.readAllStandardOutput();
    m_errors += m_process.readAllStandardError();
}

QByteArray ProgramRun::output()
{
    collect();
    return m_output;
}

QByteArray ProgramRun::errors()
{
    collect();
    return m_errors;
}

QList<QJsonObject> ProgramRun::events()
{
    QList<QJsonObject> objects;
    for (const QByteArray &line : output().split('\n')) {
        const QJsonDocument document = QJsonDocument::fromJson(line);
        if (document.isObject()) {
            objects.append(document.object());
        }
    }
    return objects;
}

} // namespace tollivar::test
