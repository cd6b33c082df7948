#pragma once

#include "platform/result.h"
#include "tasks/db/sqlite3_db.h"

#include <QString>

namespace tollivar::tasks {

/// Renames what stands at `path`, with the write-ahead log beside it, to a name that tells the
/// date: "dtasks.damaged-20240501-153012.db". Nothing is overwritten or removed.
///
/// Errors: AskUser when it cannot be renamed; then `path` is still there.
[[nodiscard]] platform::Result<QString> setAside(const QString &path);

/// Copies the tasks that can still be read from a damaged database, under their row ids; reads
/// from both ends up to the damage. Returns how many there were.
///
/// Errors: throws CppSQLite3Exception when `target` cannot take them; damage of the source only
///         means fewer tasks.
int carryTasksOver(const QString &damagedPath, CppSQLite3DB &target);

} // namespace tollivar::tasks
