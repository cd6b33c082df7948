#include "tests/support/processes.h"

#include "platform/child_process.h"
#include "platform/command_line_text.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <array>

#include <unistd.h>

namespace tollivar::test {

namespace {

/// Appends what the child says next; false when nothing more comes, failing the test when that is
/// for want of time.
bool readMore(platform::ChildProcess &child, QByteArray &output, std::chrono::seconds limit)
{
    if (!child.waitForOutput(limit)) {
        ADD_FAILURE() << "waited in vain for a child's output";
        return false;
    }
    std::array<std::byte, 4096> buffer{};
    const std::size_t count = child.read(buffer);
    output += QByteArrayView(buffer.data(), static_cast<qsizetype>(count));
    return count > 0;
}

} // namespace

QString misbehavingChildPath()
{
    return QStringLiteral(TOLLIVAR_MISBEHAVING_CHILD);
}

QString misbehavingChild(const QStringList &arguments)
{
    return platform::joinCommandLine(QStringList{misbehavingChildPath()} + arguments);
}

QString childStarter(const QString &commandLine)
{
    return platform::joinCommandLine({QStringLiteral(TOLLIVAR_CHILD_STARTER), commandLine});
}

QByteArray outputOf(platform::ChildProcess &child, std::chrono::seconds limit)
{
    QByteArray output;
    while (readMore(child, output, limit)) {
    }
    return output;
}

QByteArray firstLineOf(platform::ChildProcess &child)
{
    return LineReader(child).next();
}

QByteArray LineReader::next()
{
    while (!m_waiting.contains('\n')) {
        if (!readMore(m_child, m_waiting, std::chrono::seconds(60))) {
            ADD_FAILURE() << "a child's line is missing; it said: " << m_waiting.constData();
            return {};
        }
    }
    const qsizetype end = m_waiting.indexOf('\n');
    const QByteArray line = m_waiting.left(end);
    m_waiting.remove(0, end + 1);
    return line;
}

bool isRunning(qint64 processId)
{
    QFile status(QStringLiteral("/proc/%1/stat").arg(processId));
    if (!status.open(QIODevice::ReadOnly)) {
        return false;
    }
    // The state follows the program's name, which stands in parentheses and may hold anything.
    const QByteArray text = status.readAll();
    const QByteArray state = text.mid(text.lastIndexOf(')') + 2, 1);
    return !state.isEmpty() && state != "Z" && state != "X";
}

QStringList processesNaming(const QByteArray &text)
{
    const auto contentOf = [](const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QStringList found;
    for (const QString &id : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        const bool isOther = id.toLongLong() > 0 && id.toLongLong() != getpid();
        const QString folder = QStringLiteral("/proc/") + id;
        const QByteArray words =
            isOther ? contentOf(folder + QStringLiteral("/cmdline")) : QByteArray();
        if (words.contains(text) ||
            (isOther && contentOf(folder + QStringLiteral("/environ")).contains(text))) {
            found.append(QString::fromUtf8(words).replace(QChar::Null, u' '));
        }
    }
    return found;
}

qsizetype openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

} // namespace tollivar::test
