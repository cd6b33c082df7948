#pragma once

#include "tasks/api/task_info.h"

#include <QString>
#include <QStringView>

#include <cstdint>

namespace tollivar::tasks {

/// The texts of the statements; see docs/formats/database.md. Other programs hold databases that
/// were made by the very same texts: never change them.

[[nodiscard]] QString createStatement();
[[nodiscard]] QString insertStatement(const TaskInfo &task);
[[nodiscard]] QString updateStatement(std::int64_t row, QStringView column, QStringView value);
[[nodiscard]] QString deleteStatement(std::int64_t row);

/// A value between single quotes, as every value of a statement is written, whatever it holds.
///
/// Single quotes are doubled. A lone surrogate becomes U+FFFD: SQLite reads it and the character
/// behind it, the closing quote, as one. NUL characters are left out: they end a statement.
[[nodiscard]] QString quoted(QStringView value);

} // namespace tollivar::tasks
