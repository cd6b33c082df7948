#pragma once

#include "platform/ini_file.h"
#include "settings/setting_table.h"

#include <QString>

namespace tollivar::settings {

/// The person's preferences in "settings.ini", one value at a time: each call reads or writes the
/// file itself, and nothing is kept in memory.
///
/// Threads: the main thread.
/// Errors:  none are told: a missing file or key gives the table's default, a failed write changes
///          nothing. A flag is true for "TRUE" in any case, and false for every other text; a
///          number that is none reads as 0.
class SettingsStore {
public:
    explicit SettingsStore(const QString &path);

    [[nodiscard]] QString text(const Setting &setting) const;
    [[nodiscard]] int number(const Setting &setting) const;
    [[nodiscard]] bool flag(const Setting &setting) const;
    void setText(const Setting &setting, const QString &value) const;
    void setNumber(const Setting &setting, int value) const;
    void setFlag(const Setting &setting, bool value) const;

    /// The last output folder. While there is none: "My Flash Videos" among the documents, which is
    /// made but not written to the file.
    [[nodiscard]] QString GetLastFolder() const;
    void SetLastFolder(const QString &folder) const { setText(keys::kLastFolder, folder); }
    /// Empty asks for the built-in strings.
    [[nodiscard]] QString GetLanguage() const { return text(keys::kLanguage); }
    void SetLanguage(const QString &name) const { setText(keys::kLanguage, name); }
    [[nodiscard]] int GetTrayInfoShowTime() const { return number(keys::kTrayInfoShowTime); }
    void SetTrayInfoShowTime(int time) const { setNumber(keys::kTrayInfoShowTime, time); }

private:
    platform::IniFile m_file;
};

} // namespace tollivar::settings
