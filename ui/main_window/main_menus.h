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

    /// Runs `command` with the number of a chosen entry. `texts` is borrowed.
    MainMenus(const WindowTexts &texts, const Command &command);

    [[nodiscard]] QMenu &help() { return m_help; }
    [[nodiscard]] QMenu &list() { return m_list; }
    [[nodiscard]] QMenu &tray() { return m_tray; }
    /// The entry of a command in any of the menus; null when there is none.
    [[nodiscard]] QAction *action(int command) const;

private:
    void fill(QMenu &menu, const language::MenuTable &table, const Command &command);
    void rename(QMenu &menu, const language::MenuTable &table) const;
    void fillLanguages(QMenu &popup) const;

    const WindowTexts &m_texts;
    QMenu m_help;
    QMenu m_list;
    QMenu m_tray;
};

} // namespace tollivar::ui
