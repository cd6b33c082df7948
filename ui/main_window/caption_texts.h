#pragma once

#include <QString>

namespace tollivar::ui {

/// Texts of the main window that are made of numbers. Pure functions.

/// "Downloading (3)".
[[nodiscard]] QString filterCaption(const QString &word, int count);

/// "3 downloading, 1 waiting - 1.84 MB/s"; no speed while nothing runs, and empty when nothing runs
/// or waits. `pattern` holds the two numbers as %1 and %2; the speed is in bytes per second.
[[nodiscard]] QString totalsText(const QString &pattern, int running, int waiting, double speed);

/// Megabytes from one megabyte per second on, else kilobytes: "1.84 MB/s", "312 KB/s".
[[nodiscard]] QString speedText(double bytesPerSecond);

} // namespace tollivar::ui
