#pragma once

#include <QString>

namespace tollivar::fetch {

/// Names from pages and people into names that a file may carry. Pure functions.

/// The longest file name, ending and all, in bytes of UTF-8.
inline constexpr qsizetype kMaximumNameBytes = 255;

/// Every character that no file name may hold replaced: \ / : * ? " < > |
[[nodiscard]] QString withoutForbiddenCharacters(QString name, QChar replacement);

/// A page's title as a file name: no forbidden or control characters, at most 80 characters, ending
/// with a letter or digit; what is neither is thinned out behind the first character until the
/// first letter or digit. "ReNamed" when nothing is left, or the name is a device's.
[[nodiscard]] QString cleanName(const QString &title, QChar replacement);

/// A file ending from outside, dot included, that can do no harm: nothing that leaves the folder,
/// at most a few characters, and ".download" behind an ending that the desktop would run or follow.
/// Empty stays empty.
[[nodiscard]] QString harmlessFileType(const QString &type);

/// The name cut so that it fits the file system together with `type` and a counter such as "(9999)".
[[nodiscard]] QString fittingName(const QString &name, const QString &type);

} // namespace tollivar::fetch
