#include "tests/support/noting_program.h"

#include "tests/support/wait_until.h"

#include <QFile>

#include <gtest/gtest.h>

namespace tollivar::test {

namespace {

/// How many there are and each of them, in one write, so that no reader sees half of it.
constexpr auto kScript = "#!/bin/sh\nprintf '%s\\0' \"$#\" \"$@\" >>\"$0.notes\"\n";

} // namespace

NotingProgram::NotingProgram(const Sandbox &sandbox, const QString &name)
    : m_sandbox(sandbox)
    , m_notes(name + QStringLiteral(".notes"))
{
    EXPECT_TRUE(QFile::setPermissions(sandbox.write(name, kScript),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

std::vector<QStringList> NotingProgram::starts() const
{
    std::vector<QStringList> starts;
    const QList<QByteArray> parts = m_sandbox.read(m_notes).split('\0');
    for (qsizetype place = 0; place + 1 < parts.size();) {
        const qsizetype count = parts[place].toInt();
        QStringList &arguments = starts.emplace_back();
        for (const QByteArray &argument : parts.mid(place + 1, count)) {
            arguments.append(QFile::decodeName(argument));
        }
        place += 1 + count;
    }
    return starts;
}

void NotingProgram::waitForStarts(std::size_t count) const
{
    waitUntil("the start of a program", [&] { return starts().size() >= count; });
}

DesktopOpener::DesktopOpener(const Sandbox &sandbox)
    : m_program(sandbox, QStringLiteral("desktop/xdg-open"))
    , m_oldPath(qgetenv("PATH"))
{
    qputenv("PATH", QFile::encodeName(sandbox.file(QStringLiteral("desktop"))) + ':' + m_oldPath);
}

DesktopOpener::~DesktopOpener()
{
    qputenv("PATH", m_oldPath);
}

QStringList DesktopOpener::opened() const
{
    QStringList opened;
    for (const QStringList &arguments : m_program.starts()) {
        EXPECT_EQ(arguments.size(), 1);
        opened += arguments;
    }
    return opened;
}

QString DesktopOpener::waitForFirst() const
{
    m_program.waitForStarts(1);
    return opened().value(0);
}

} // namespace tollivar::test
