#pragma once

#include <QLatin1StringView>

#include <array>

namespace tollivar::settings {

/// What a value's text stands for.
enum class SettingType { Text, Number, Flag };

/// One key of "settings.ini"; docs/formats/settings.md describes the file.
struct Setting {
    QLatin1StringView section;
    QLatin1StringView key;
    SettingType type = SettingType::Text;
    QLatin1StringView fallback; ///< the value's text while the key is missing
};

namespace keys {

inline constexpr QLatin1StringView kWindowSection{"SETTING_INFO"};
inline constexpr QLatin1StringView kOptionsSection{"OPTIONS"};
inline constexpr QLatin1StringView kTrue{"TRUE"};
inline constexpr QLatin1StringView kFalse{"FALSE"};

inline constexpr Setting kLastFolder{kWindowSection, QLatin1StringView("LAST_FOLDER"),
                                     SettingType::Text, QLatin1StringView("")};
inline constexpr Setting kLanguage{kWindowSection, QLatin1StringView("LANGUAGE"), SettingType::Text,
                                   QLatin1StringView("")};
inline constexpr Setting kTrayInfoShowTime{kWindowSection, QLatin1StringView("TRAYINFO_SHOWTIME"),
                                           SettingType::Number, QLatin1StringView("0")};
/// Where the drop zone floats, "x,y" on the screen; empty: at the right edge.
inline constexpr Setting kDropZonePlace{kWindowSection, QLatin1StringView("DROPZONE_PLACE"),
                                        SettingType::Text, QLatin1StringView("")};
/// Where the main window stood, "x,y,width,height" on the screens; empty: nowhere yet.
inline constexpr Setting kWindowPlace{kWindowSection, QLatin1StringView("WINDOW_PLACE"),
                                      SettingType::Text, QLatin1StringView("")};
inline constexpr Setting kWindowMaximised{kWindowSection, QLatin1StringView("WINDOW_MAXIMIZED"),
                                          SettingType::Flag, kFalse};
/// Of the list's columns from the left, "40,180,…"; empty: they share the list.
inline constexpr Setting kColumnWidths{kWindowSection, QLatin1StringView("COLUMN_WIDTHS"),
                                       SettingType::Text, QLatin1StringView("")};
/// What is done with "layout.ini"; 2 gives windows the places in it.
inline constexpr Setting kLayoutMode{kWindowSection, QLatin1StringView("LAYOUT_MODE"),
                                     SettingType::Number, QLatin1StringView("0")};
inline constexpr Setting kOpenFolder{kWindowSection, QLatin1StringView("OPEN_FOLDER"),
                                     SettingType::Flag, kFalse};
inline constexpr Setting kOverwriteExist{kWindowSection, QLatin1StringView("OVERWRITE_EXIST"),
                                         SettingType::Flag, kFalse};
inline constexpr Setting kNoRemindFlashVersion{
    kWindowSection, QLatin1StringView("NOREMIND_FLASHVER"), SettingType::Flag, kFalse};
inline constexpr Setting kAutoStart{kOptionsSection, QLatin1StringView("AUTOSTART"),
                                    SettingType::Flag, kTrue};
inline constexpr Setting kCheckUpdate{kOptionsSection, QLatin1StringView("CHECKUPDATE"),
                                      SettingType::Number, QLatin1StringView("1")};
inline constexpr Setting kShowDragZone{kOptionsSection, QLatin1StringView("SHOW_DRAGZONE"),
                                       SettingType::Flag, kTrue};
/// A group of options that was never loaded retries three times; see CGeneralOptions.
inline constexpr Setting kMaxRetry{kOptionsSection, QLatin1StringView("MAX_RETRY"),
                                   SettingType::Number, QLatin1StringView("1")};
inline constexpr Setting kMaxSimDownloads{kOptionsSection, QLatin1StringView("MAX_SIMDOWNLOADS"),
                                          SettingType::Number, QLatin1StringView("5")};
inline constexpr Setting kMinimizeDragTask{kOptionsSection, QLatin1StringView("MINIMIZE_DRAGTASK"),
                                           SettingType::Flag, kFalse};
inline constexpr Setting kAutoParseOriginalUrl{
    kOptionsSection, QLatin1StringView("AUTOPARSE_ORIGINALURL"), SettingType::Flag, kTrue};
inline constexpr Setting kMonitorVideoSite{kOptionsSection, QLatin1StringView("MONITOR_YOUTUBEURL"),
                                           SettingType::Flag, kTrue};

} // namespace keys

/// Every key there is.
inline constexpr std::array kSettingTable = {
    keys::kLastFolder,
    keys::kLanguage,
    keys::kTrayInfoShowTime,
    keys::kDropZonePlace,
    keys::kWindowPlace,
    keys::kWindowMaximised,
    keys::kColumnWidths,
    keys::kLayoutMode,
    keys::kOpenFolder,
    keys::kOverwriteExist,
    keys::kNoRemindFlashVersion,
    keys::kAutoStart,
    keys::kCheckUpdate,
    keys::kShowDragZone,
    keys::kMaxRetry,
    keys::kMaxSimDownloads,
    keys::kMinimizeDragTask,
    keys::kAutoParseOriginalUrl,
    keys::kMonitorVideoSite,
};

} // namespace tollivar::settings
