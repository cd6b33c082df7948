#pragma once

#include "tasks/db/sqlite3_db.h"

namespace tollivar::tasks {

/// Makes table `tasks2` when it is missing.
///
/// Errors: throws CppSQLite3Exception.
void ensureTaskTable(CppSQLite3DB &database);

/// As ensureTaskTable(), and moves the rows of the older table `tasks` into it, as one transaction.
///
/// Errors: throws CppSQLite3Exception; then the older table is still there, whole.
void ensureTaskSchema(CppSQLite3DB &database);

/// Throws CppSQLite3Exception with the code of a damaged file when `tasks2` has other columns than
/// kTaskColumns: its rows could be neither written nor understood.
void checkTaskColumns(CppSQLite3DB &database);

} // namespace tollivar::tasks
