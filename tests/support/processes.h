#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>

namespace tollivar::platform {
class ChildProcess;
}

namespace tollivar::test {

/// Real processes for tests.

/// The command line of the misbehaving child: what it shall do, and that misbehaviour's arguments.
[[nodiscard]] QString misbehavingChild(const QStringList &arguments);
/// Absolute path of that program.
[[nodiscard]] QString misbehavingChildPath();
/// The command line of a program that starts `commandLine` by ChildProcess and waits for ever.
[[nodiscard]] QString childStarter(const QString &commandLine);

/// All output of a child until it is done; fails the test when it is silent for `limit`.
[[nodiscard]] QByteArray outputOf(platform::ChildProcess &child,
                                  std::chrono::seconds limit = std::chrono::seconds(60));
/// The first line of a child's output without its end; fails the test when none comes.
[[nodiscard]] QByteArray firstLineOf(platform::ChildProcess &child);

/// The lines that a child writes, one by one.
class LineReader {
public:
    /// The child must outlive the reader.
    explicit LineReader(platform::ChildProcess &child) : m_child(child) {}

    /// The next line without its end; fails the test and is empty when none comes.
    [[nodiscard]] QByteArray next();

private:
    platform::ChildProcess &m_child;
    QByteArray m_waiting;
};

/// True while the process runs; a zombie that nobody has reaped does not count.
[[nodiscard]] bool isRunning(qint64 processId);
/// Command lines of the processes, other than this one, that have `text` in their command line or
/// in the environment that they were started with.
[[nodiscard]] QStringList processesNaming(const QByteArray &text);
/// How many descriptors this process has open.
[[nodiscard]] qsizetype openDescriptors();

} // namespace tollivar::test
