#pragma once

#include "app/language/menu_tables.h"
#include "app/language/string_table.h"
#include "platform/result.h"
#include "settings/settings_store.h"

#include <QHash>
#include <QString>
#include <QStringList>

namespace tollivar::language {

/// Every text that a person sees, in the language that the settings name: built-in English, with
/// what that language's file says in its place. docs/languages.md describes the files.
///
/// Threads: the main thread.
/// Errors:  reading tells none: whatever a file lacks, or holds wrongly, stays English.
class Languages {
public:
    /// `settings` is borrowed and must outlive the object.
    Languages(const settings::SettingsStore &settings, QString folder);

    /// Finds the language files that are there now, and applies the chosen language.
    void load();
    /// Chooses a language and remembers the choice; an unknown one changes nothing.
    void apply(const QString &name);

    /// The names of the files found, in the order in which they were; empty before load().
    [[nodiscard]] const QStringList &names() const { return m_names; }
    /// The applied language; empty while the texts are the built-in ones.
    [[nodiscard]] const QString &current() const { return m_current; }

    [[nodiscard]] QString text(const QString &id) const { return m_strings.text(id); }
    /// A menu entry's text; empty when the language has none.
    [[nodiscard]] QString menuText(const QString &section, const QString &key) const;
    /// A dialog's text by section and control name; empty when the language has none.
    [[nodiscard]] QString dialogText(const QString &section, const QString &control) const;

    /// Writes the present texts of a menu into the current language file, as a template to
    /// translate: what is translated already stays, the rest is English.
    /// Errors: AskUser while no language file is in use; otherwise what writing the file tells.
    [[nodiscard]] platform::Result<void> writeTemplate(const MenuTable &menu) const;

private:
    void forgetTexts();
    void readStrings();
    void readMenu(const MenuTable &menu);

    const settings::SettingsStore &m_settings;
    QString m_folder;
    StringTable m_strings;
    QStringList m_names;
    QHash<QString, QString> m_paths; ///< by name
    QString m_current;
    QHash<QString, QString> m_menuTexts;                       ///< by section and key
    mutable QHash<QString, QHash<QString, QString>> m_dialogs; ///< sections read so far
};

} // namespace tollivar::language
