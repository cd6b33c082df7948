#pragma once

#include "tasks/api/task_info.h"

#include <QString>

namespace tollivar::convert {

/// How the converter is called. Pure functions.

/// The line that makes the converter tell about a file.
[[nodiscard]] QString probeCommandLine(const QString &inputPath);

/// What BuildCommandLine() gives.
struct ConverterCommand {
    QString line;
    int seconds = 0; ///< of the output; 0 when the length is not known
};

/// The line that converts the record's file: its name, then every option that holds something else
/// than "Auto", in the converter's old language.
[[nodiscard]] ConverterCommand BuildCommandLine(const tasks::TaskInfo &task);

/// Where the converted file goes: the record's file with the profile's type.
[[nodiscard]] QString convertedPath(const tasks::TaskInfo &task);

} // namespace tollivar::convert
