#pragma once

#include <QString>

class QWidget;

namespace tollivar::ui {

/// Places of windows and their controls in "layout.ini" beside the program, for whoever designs a
/// window: one section for each, the window's rectangle under the section's own name.
///
/// Threads: the main thread.

/// What the program does with stored layouts; only Restore reads them.
enum class LayoutMode : int { Ignore = 0, Restore = 2 };
void setLayoutMode(LayoutMode mode);
/// Every number but that of Restore means Ignore.
[[nodiscard]] LayoutMode layoutModeOf(int number);

/// "layout.ini" in the working folder, which the program makes its own.
[[nodiscard]] QString layoutPath();

/// Writes rectangle and font of the window and of every named control of it.
/// A file that cannot be written stays as it was.
void saveLayout(const QWidget &window, const QString &section, const QString &path = layoutPath());

/// Gives the window the stored size, and its controls theirs, while the mode is Restore. Entries
/// that are missing, malformed or absurd are passed over.
void restoreLayout(QWidget &window, const QString &section, const QString &path = layoutPath());

} // namespace tollivar::ui
