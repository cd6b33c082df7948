#include "app/language/menu_tables.h"

#include <QString>

#include <array>

namespace tollivar::language {

namespace {

using Kind = MenuEntry::Kind;
using namespace Qt::StringLiterals;

constexpr MenuEntry kLine{Kind::Separator};

constexpr std::array kHelpEntries = {
    MenuEntry{Kind::Command, commands::kSettings, u"Settings..."},
    MenuEntry{Kind::Popup, 0, u"Language"},
    kLine,
    MenuEntry{Kind::Command, commands::kCheckUpdates, u"Check for Updates..."},
    kLine,
    MenuEntry{Kind::Command, commands::kHelp, u"Help"},
    MenuEntry{Kind::Command, commands::kCannotWatch, u"Cannot Watch a Video?"},
    MenuEntry{Kind::Command, commands::kHomePage, u"Home Page"},
    kLine,
    MenuEntry{Kind::Command, commands::kAbout, u"About..."},
};

constexpr std::array kListEntries = {
    MenuEntry{Kind::Command, commands::kPlay, u"Play with Default Player"},
    MenuEntry{Kind::Command, commands::kPlayInPlayer, u"Play with Clip Player"},
    kLine,
    MenuEntry{Kind::Command, commands::kBrowseFile, u"Browse Downloaded File"},
    MenuEntry{Kind::Command, commands::kOpenFolder, u"Open Output Folder"},
    kLine,
    MenuEntry{Kind::Command, commands::kCopyWebAddress, u"Copy Web Address"},
    MenuEntry{Kind::Command, commands::kCopyFileAddress, u"Copy File Address"},
    MenuEntry{Kind::Command, commands::kOpenWebPage, u"Open Web Page in Browser"},
    kLine,
    MenuEntry{Kind::Command, commands::kConvert, u"Convert..."},
};

constexpr std::array kTrayEntries = {
    MenuEntry{Kind::Command, commands::kToggleWindow, u"Open/Hide Window"},
    kLine,
    MenuEntry{Kind::Command, commands::kDropZone, u"Drop Zone"},
    kLine,
    MenuEntry{Kind::Command, commands::kAddTask, u"Add Task..."},
    kLine,
    MenuEntry{Kind::Command, commands::kAbout, u"About..."},
    MenuEntry{Kind::Command, commands::kExit, u"Exit"},
};

} // namespace

const MenuTable &helpMenu()
{
    static constexpr MenuTable kMenu{"IDR_MENU_HELP"_L1, kHelpEntries};
    return kMenu;
}

const MenuTable &listMenu()
{
    static constexpr MenuTable kMenu{"IDR_MENU_LIST"_L1, kListEntries};
    return kMenu;
}

const MenuTable &trayMenu()
{
    static constexpr MenuTable kMenu{"IDR_MENU_TRAY"_L1, kTrayEntries};
    return kMenu;
}

QString menuKey(const MenuEntry &entry, int position)
{
    return entry.kind == Kind::Popup ? u"POP_%1"_s.arg(position) : QString::number(entry.command);
}

} // namespace tollivar::language
