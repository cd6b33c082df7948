#pragma once

#include <QByteArray>
#include <QString>

namespace tollivar::app {

/// Both write at once, in UTF-8, and ignore a closed reader.
void writeOutput(const QByteArray &text);
void writeError(const QString &text);

/// One sentence on standard error, behind the program's name.
void complain(const QString &sentence);

/// A text from outside without characters that would command the terminal.
[[nodiscard]] QString printable(const QString &text);

} // namespace tollivar::app
