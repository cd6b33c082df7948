#pragma once

#include "app/language/menu_tables.h"
#include "ui/dialogs/window_texts.h"

#include <QMenu>

#include <functional>

namespace tollivar::ui {

/// The three menus of the program, made from their tables and named anew each time one opens.
///
/// Threads: the main thread.
/// Owns:    the menus.
class MainMenus {
public:
    using Command = std::function<void(int command)>;

    /// The profiles that the selected tasks can be converted to now; empty: none.
    using Profiles = std::function<QStringList()>;
    using Convert = std::function<void(const QString &profile)>;
    /// Whether a command could do anything now.
    using Availability = std::function<bool(int command)>;

    /// Runs `command` with the number of a chosen entry. `texts` is borrowed.
    MainMenus(const WindowTexts &texts, const Command &command);
    /// Ends the list's menu with the choice of profiles, which asks each time it opens.
    void addProfiles(const Profiles &profiles, const Convert &convert);

    /// Greys out what could do nothing each time the list's menu opens.
    void enableListBy(const Availability &isAvailable);

    [[nodiscard]] QMenu &help() { return m_help; }
    [[nodiscard]] QMenu &list() { return m_list; }
    [[nodiscard]] QMenu &tray() { return m_tray; }
    /// Ends the list's menu with the entry that copies what a question about a task needs; grey
    /// while there is nothing to copy.
    void addCopyDetails(const std::function<void()> &copy, const std::function<bool()> &canCopy);

private:
    void fill(QMenu &menu, const language::MenuTable &table, const Command &command);
    static void showKeys(QMenu &menu);
    void rename(QMenu &menu, const language::MenuTable &table) const;
    void fillLanguages(QMenu &popup) const;

    const WindowTexts &m_texts;
    QMenu m_help;
    QMenu m_list;
    QMenu m_tray;
};

} // namespace tollivar::ui
