#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

namespace tollivar::DuiLib {

/// `text` in at most `maximumLines` lines of `width` pixels, broken between words where that is
/// possible; what does not fit is left out in the middle. Blanks at the ends of lines are dropped,
/// and line breaks count as blanks. Never empty.
[[nodiscard]] QStringList fittedLines(const QString &text, const QFont &font, int width,
                                      int maximumLines);

} // namespace tollivar::DuiLib
