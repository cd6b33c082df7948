#pragma once

#include "platform/result.h"

#include <QHash>
#include <QString>
#include <QStringView>

#include <vector>

namespace tollivar::platform {

/// Sections and keys of one INI file, read and written as the classic private-profile routines do.
///
/// Sections and keys are found without regard to case; the first of several equal ones counts. One
/// pair of surrounding quotes is stripped from a value. A file is UTF-16LE with its mark, UTF-8
/// with or without one, or ANSI (taken as Latin-1 when it is not valid UTF-8); writing keeps the
/// file's own encoding and every line it does not understand.
///
/// Threads: each call stands alone; the calls of one process on one file belong on one thread.
/// Errors:  a missing file, section or key reads as the default; any file content is accepted.
class IniFile {
public:
    explicit IniFile(QString path);

    /// The trimmed value, at most 32,767 characters, or `fallback` when the key is missing.
    [[nodiscard]] QString read(QStringView section, QStringView key,
                               const QString &fallback = {}) const;

    /// All values of one section by their keys in lower case: for lists, where reading key by key
    /// would read the file as often.
    [[nodiscard]] QHash<QString, QString> readSection(QStringView section) const;

    /// Sets one value at once: written beside and renamed, so that a reader sees the old file or
    /// the new one. A new file begins as UTF-16LE with its mark. Line breaks in the value are
    /// replaced by blanks.
    [[nodiscard]] Result<void> write(QStringView section, QStringView key, QStringView value) const;

    /// Sets many values as one write would, in their order.
    struct Value {
        QString section;
        QString key;
        QString value;
    };
    [[nodiscard]] Result<void> write(const std::vector<Value> &values) const;

    [[nodiscard]] const QString &path() const { return m_path; }

private:
    QString m_path;
};

/// The values that readSection() finds in a file of this content.
[[nodiscard]] QHash<QString, QString> iniSection(QStringView text, QStringView section);

/// A number as the classic routines convert it: leading blanks and sign, then digits up to the
/// first other character; 0 when there are none; saturating.
[[nodiscard]] int iniNumber(QStringView text);

} // namespace tollivar::platform
