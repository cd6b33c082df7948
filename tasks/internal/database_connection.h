#pragma once

#include "tasks/db/sqlite3_db.h"

#include <QString>

#include <functional>

namespace tollivar::tasks {

/// Opens the database, checks it and makes table `tasks2` when it is missing.
///
/// `fillNew` is called for a database without any table, within the transaction that makes them,
/// so that a first start that is cut short begins anew.
///
/// Errors: throws CppSQLite3Exception and leaves `database` closed; one that isDamagedFile() when
///         the file is broken, is no database, or holds a task table of another shape.
void connectToTasks(CppSQLite3DB &database, const QString &path,
                    const std::function<void(CppSQLite3DB &)> &fillNew);

} // namespace tollivar::tasks
