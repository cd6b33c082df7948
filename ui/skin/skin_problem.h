#pragma once

#include <QString>

namespace tollivar::DuiLib {

/// Something in a skin that its author should mend. `line` is 0 when it concerns the whole file.
struct SkinProblem {
    QString file{};
    int line = 0;
    QString text{};

    /// "AppTollivar.xml:12: unknown element Foo".
    [[nodiscard]] QString toString() const
    {
        const QString place = line == 0 ? file : file + u':' + QString::number(line);
        return place + QStringLiteral(": ") + text;
    }

    bool operator==(const SkinProblem &) const = default;
};

} // namespace tollivar::DuiLib
