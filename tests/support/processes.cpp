#include "tests/support/processes.h"

#include "platform/child_process.h"
#include "platform/command_line_text.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <array>

namespace tollivar::test {

namespace {

/// Reads until `isEnough` or until nothing more will come.
QByteArray readUntil(platform::ChildProcess &child, std::chrono::seconds limit,
                     bool (*isEnough)(const QByteArray &))
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    QByteArray output;
    std::array<std::byte, 4096> buffer{};
    while (!isEnough(output)) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0 || !child.waitForOutput(left)) {
            ADD_FAILURE() << "waited in vain for a child's output";
            break;
        }
        const std::size_t count = child.read(buffer);
        if (count == 0) {
            break;
        }
        output += QByteArrayView(buffer.data(), static_cast<qsizetype>(count));
    }
    return output;
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
    return readUntil(child, limit, [](const QByteArray &) { return false; });
}

QByteArray firstLineOf(platform::ChildProcess &child)
{
    const QByteArray output = readUntil(child, std::chrono::seconds(60),
                                        [](const QByteArray &text) { return text.contains('\n'); });
    EXPECT_TRUE(output.contains('\n')) << output.constData();
    return output.left(output.indexOf('\n'));
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

qsizetype openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

} // namespace tollivar::test
