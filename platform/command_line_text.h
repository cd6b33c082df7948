#pragma once

#include <QString>
#include <QStringList>

namespace tollivar::platform {

/// Splits a command line by the quoting rules of Windows programs: blanks and tabs part arguments;
/// double quotes keep them together; a backslash is itself unless a run of backslashes stands
/// before a double quote, where each pair is one backslash and an odd one makes the quote literal;
/// two double quotes inside a quoted stretch are one literal quote. The program name (first
/// argument) knows quotes but no escapes. An unclosed quote ends with the text.
[[nodiscard]] QStringList splitCommandLine(QStringView commandLine);

/// The inverse: quotes each argument so that splitCommandLine() gives the same list back.
[[nodiscard]] QString joinCommandLine(const QStringList &arguments);

} // namespace tollivar::platform
