#include "tests/companions/pageprobe/probe_run.h"

#include "platform/browser_engine.h"
#include "platform/child_process.h"
#include "platform/command_line_text.h"
#include "tests/support/processes.h"
#include "tests/support/wait_until.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace tollivar::test {

ProbeSurroundings::ProbeSurroundings() : m_browser(platform::findBrowser().value_or(QString()))
{
    EXPECT_TRUE(QDir().mkpath(temporaryFolder()));
    EXPECT_TRUE(QDir().mkpath(m_sandbox.file(QStringLiteral("bin"))));
}

ProbeSurroundings::~ProbeSurroundings()
{
    waitUntil("every process to be gone", [this] { return leftProcesses().isEmpty(); });
    waitUntil("the temporary folder to be empty", [this] { return leftFiles().isEmpty(); });
    EXPECT_EQ(leftProcesses(), QStringList());
    EXPECT_EQ(leftFiles(), QStringList());
}

void ProbeSurroundings::installExtractor(const QByteArray &script) const
{
    const QString path = m_sandbox.write(QStringLiteral("bin/yt-dlp"), "#!/bin/sh\n" + script);
    EXPECT_TRUE(
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

std::unique_ptr<platform::ChildProcess> ProbeSurroundings::start(const QStringList &arguments) const
{
    const platform::ChildOptions options{
        .environment = {QStringLiteral("TMPDIR=") + temporaryFolder(),
                        QStringLiteral("PATH=") + m_sandbox.file(QStringLiteral("bin")),
                        QStringLiteral("TOLLIVAR_BROWSER=") + m_browser,
                        QStringLiteral("TOLLIVAR_LOG_FILE=") +
                            m_sandbox.file(QStringLiteral("log")),
                        QStringLiteral("NOTE=") + noteFile()}};
    auto child = platform::ChildProcess::start(
        platform::joinCommandLine(QStringList{QStringLiteral(TOLLIVAR_PAGE_PROBE)} + arguments),
        options);
    EXPECT_TRUE(child) << qPrintable(child.error().text);
    return child ? std::move(*child) : nullptr;
}

ProbeResult ProbeSurroundings::run(const QStringList &arguments) const
{
    const auto child = start(arguments);
    ProbeResult result;
    result.output = outputOf(*child);
    waitUntil("the end of PageProbe", [&child] { return child->hasEnded(); });
    result.status = child->exitCode().value_or(-1);
    result.records = fetch::readAnswer(QString::fromUtf8(result.output));
    return result;
}

ProbeResult ProbeSurroundings::probe(const QString &address, const QStringList &more) const
{
    return run(QStringList{QStringLiteral("-url"), address} + more);
}

QStringList ProbeSurroundings::leftFiles() const
{
    return QDir(temporaryFolder())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

QStringList ProbeSurroundings::leftProcesses() const
{
    const QByteArray mark = m_sandbox.path().toUtf8();
    QStringList left;
    for (const QString &process : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        bool isNumber = false;
        const qint64 number = process.toLongLong(&isNumber);
        QFile environment(QStringLiteral("/proc/%1/environ").arg(process));
        QFile commandLine(QStringLiteral("/proc/%1/cmdline").arg(process));
        if (!isNumber || !isRunning(number) || !environment.open(QIODevice::ReadOnly) ||
            !commandLine.open(QIODevice::ReadOnly)) {
            continue;
        }
        const QByteArray line = commandLine.readAll().replace('\0', ' ');
        if (environment.readAll().contains(mark) || line.contains(mark)) {
            left.append(QString::fromUtf8(line));
        }
    }
    return left;
}

} // namespace tollivar::test
