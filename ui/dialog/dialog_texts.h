#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace tollivar::ui {

/// A dialog's text by section and control name; empty when the language has none.
using DialogTexts = std::function<QString(const QString &section, const QString &control)>;

/// Gives every named control below `window` its text of that section; the entry "title" names the
/// window itself, and "NAME_0", "NAME_1" the items of a list. What has no text keeps the skin's.
void applyDialogTexts(QWidget &window, const QString &section, const DialogTexts &texts);

} // namespace tollivar::ui
