#pragma once

#include "tests/support/sandbox.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QProcess>
#include <QStringList>

#include <memory>

namespace tollivar::test {

/// One of the built programs, started on directories of the test's own.
class ProgramRun {
public:
    /// Of a built program by its name; an absolute path stays.
    [[nodiscard]] static QString pathOf(const QString &program);

    /// `sandbox` holds data, state and runtime directories; runs that share it share the tasks.
    ProgramRun(const Sandbox &sandbox, const QString &program, const QStringList &arguments);
    /// Ends a program that still runs.
    ~ProgramRun();
    ProgramRun(const ProgramRun &) = delete;
    ProgramRun &operator=(const ProgramRun &) = delete;

    /// Waits for its end and returns the exit status; -1 when a signal ended it.
    int finish();
    /// Waits until standard output holds `text`; fails the test when it never does.
    void waitForOutput(const QByteArray &text);
    /// Sends a signal by its number.
    void signal(int number) const;

    [[nodiscard]] QByteArray output();
    [[nodiscard]] QByteArray errors();
    /// Standard output as one JSON object a line; what is none is left out.
    [[nodiscard]] QList<QJsonObject> events();

private:
    void collect();

    QProcess m_process;
    QByteArray m_output;
    QByteArray m_errors;
};

} // namespace tollivar::test
