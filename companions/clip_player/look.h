#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

class QApplication;

/// Colours, icons and style of the player's one dark face.
namespace tollivar::player::look {

inline constexpr QColor kStage{0, 0, 0};
inline constexpr QColor kPage{19, 22, 26};
inline constexpr QColor kText{232, 236, 241};
inline constexpr QColor kGroove{62, 69, 79};
inline constexpr QColor kAccent{74, 151, 230};
inline constexpr QColor kAccentBright{107, 174, 243};
inline constexpr QColor kFocusRing{107, 174, 243, 110};

/// Makes every window of the program dark, dialogs too. Call once, before the first window.
void wear(QApplication &application);

/// One of the player's own icons, by the name of its file; with "-off" behind the name stands how it
/// looks on what is switched off, where that ever happens.
[[nodiscard]] QIcon icon(const QString &name);

} // namespace tollivar::player::look
