#pragma once

#include "tests/support/sandbox.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace tollivar::test {

/// A program in place of a real one, which only notes what it is started with.
class NotingProgram {
public:
    /// Lies in `sandbox` under `name`, which may hold a folder. The sandbox must outlive it.
    NotingProgram(const Sandbox &sandbox, const QString &name);

    /// The arguments of each start so far, each as it came.
    [[nodiscard]] std::vector<QStringList> starts() const;
    /// Waits until it has been started that often; fails the test when it never is.
    void waitForStarts(std::size_t count) const;

private:
    const Sandbox &m_sandbox;
    QString m_notes;
};

/// The desktop's own opener of files and addresses, as a program that only notes what it is to
/// open. The search path finds it while the object lives.
class DesktopOpener {
public:
    explicit DesktopOpener(const Sandbox &sandbox);
    ~DesktopOpener();
    DesktopOpener(const DesktopOpener &) = delete;
    DesktopOpener &operator=(const DesktopOpener &) = delete;

    /// What it was to open so far, in this order.
    [[nodiscard]] QStringList opened() const;
    /// Waits until it has something to open, and gives the first; fails the test when none comes.
    [[nodiscard]] QString waitForFirst() const;

private:
    NotingProgram m_program;
    QByteArray m_oldPath;
};

} // namespace tollivar::test
