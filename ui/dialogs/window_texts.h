#pragma once

#include "ui/dialog/dialog_texts.h"

#include <QString>

#include <functional>

namespace tollivar::ui {

/// The language as the windows see it; every function always answers with the current one.
struct WindowTexts {
    std::function<QString(const QString &id)> text;
    DialogTexts dialog;
    /// A menu entry's text by section and key; empty when the language has none.
    std::function<QString(const QString &section, const QString &key)> menu;
    std::function<QStringList()> languages;
    std::function<QString()> currentLanguage;
    std::function<void(const QString &name)> applyLanguage;
};

} // namespace tollivar::ui
