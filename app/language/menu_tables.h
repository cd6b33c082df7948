#pragma once

#include <QLatin1StringView>
#include <QStringView>

#include <span>

namespace tollivar::language {

/// One entry of a menu.
struct MenuEntry {
    enum class Kind { Command, Separator, Popup };
    Kind kind = Kind::Command;
    int command = 0; ///< 0 for a separator and a popup
    QStringView english{};
};

/// A menu and the section of language files that names its entries.
struct MenuTable {
    QLatin1StringView section;
    std::span<const MenuEntry> entries;
};

/// Commands of the menus. Language files are keyed by them: never renumber.
namespace commands {
inline constexpr int kToggleWindow = 32780;
inline constexpr int kAddTask = 32781;
inline constexpr int kAbout = 32782;
inline constexpr int kExit = 32783;
inline constexpr int kDropZone = 32802;
inline constexpr int kPlay = 32790;
inline constexpr int kPlayInPlayer = 32791;
inline constexpr int kBrowseFile = 32792;
inline constexpr int kOpenFolder = 32793;
inline constexpr int kCopyWebAddress = 32794;
inline constexpr int kCopyFileAddress = 32795;
inline constexpr int kOpenWebPage = 32796;
inline constexpr int kConvert = 32797;
inline constexpr int kSettings = 32810;
inline constexpr int kCheckUpdates = 32811;
inline constexpr int kHelp = 32812;
inline constexpr int kCannotWatch = 32813;
inline constexpr int kHomePage = 32814;
} // namespace commands

[[nodiscard]] const MenuTable &helpMenu();
[[nodiscard]] const MenuTable &listMenu();
[[nodiscard]] const MenuTable &trayMenu();

/// The key of an entry in its section: the command in decimal, "POP_2" for a popup by its place.
[[nodiscard]] QString menuKey(const MenuEntry &entry, int position);

} // namespace tollivar::language
