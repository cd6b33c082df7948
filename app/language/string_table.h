#pragma once

#include <QHash>
#include <QString>
#include <QStringView>

#include <span>

namespace tollivar::language {

/// One text of the program: its id and what it says in English.
struct BuiltInText {
    QStringView id;
    QStringView english;
};

/// Every text there is; a new one is one more line here.
[[nodiscard]] std::span<const BuiltInText> builtInTexts();

/// The texts of the current language by id. The ids are those of the built-in table: a language
/// can change what they say, not add to them.
class StringTable {
public:
    StringTable() { reset(); }

    /// Back to English.
    void reset();
    /// Gives an id another text; an unknown id and an empty text change nothing.
    void set(const QString &id, const QString &text);
    /// The id itself when it is unknown.
    [[nodiscard]] QString text(const QString &id) const { return m_texts.value(id, id); }

private:
    QHash<QString, QString> m_texts;
};

/// A value of a language file as text: "\r" and "\n" are line ends, a backslash before any other
/// character falls away. What a replacement leaves is read again from the beginning, so that "\\n"
/// ends a line too.
[[nodiscard]] QString unescaped(QStringView value);

} // namespace tollivar::language
