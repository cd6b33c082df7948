#pragma once

#include <QKeySequence>
#include <QLatin1StringView>
#include <QString>

#include <span>

namespace tollivar::ui {

/// A key of the main window, which does what a button or the entry of a menu does.
struct WindowKey {
    QKeyCombination keys;
    QLatin1StringView button{}; ///< empty when it stands for a command
    int command = 0;            ///< 0 when it stands for a button
};

[[nodiscard]] std::span<const WindowKey> windowKeys();

/// The keys that do the same; empty when none do.
[[nodiscard]] QKeySequence keysOf(QLatin1StringView button);
[[nodiscard]] QKeySequence keysOf(int command);

/// A tool tip that tells the keys too, "Start Task(s) (F5)".
[[nodiscard]] QString withKeys(const QString &tip, const QKeySequence &keys);

} // namespace tollivar::ui
