#pragma once

#include <QString>
#include <QStringList>

namespace tollivar::app {

/// The terminal front end: runs one command and returns the exit status (exit_status.h).
///
/// `arguments` begin behind the program's name; relative folders among them are the caller's.
/// Threads: the main thread, with a QCoreApplication.
[[nodiscard]] int runCli(const QStringList &arguments, const QString &callerDirectory);

} // namespace tollivar::app
