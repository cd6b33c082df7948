#include "tasks/internal/task_schema.h"

#include "tasks/db/sqlite3_exception.h"
#include "tasks/internal/task_rows.h"
#include "tasks/internal/task_statements.h"
#include "tasks/internal/transaction.h"
#include "tasks/legacy_import.h"

namespace tollivar::tasks {

using namespace Qt::StringLiterals;

namespace {

void moveOlderRows(CppSQLite3DB &database)
{
    CppSQLite3Query rows = database.execQuery(u"select * from tasks"_s);
    // A table that lacks a column is not ours to drop: a missing name throws here.
    for (std::size_t column = 0; column < kOlderColumnCount; ++column) {
        static_cast<void>(rows.fieldIndex(kTaskColumns.at(column).name));
    }
    const TaskRowReader reader(rows);
    for (; !rows.eof(); rows.nextRow()) {
        TaskInfo task = reader.read(rows, kOlderColumnCount);
        task.nCompletedStatus = olderCompletedStatus(task);
        database.execDML(insertStatement(task));
    }
    rows.finalize();
    database.execDML(u"DROP TABLE tasks"_s);
}

} // namespace

void ensureTaskTable(CppSQLite3DB &database)
{
    if (!database.tableExists(u"tasks2"_s)) {
        database.execDML(createStatement());
    }
}

void ensureTaskSchema(CppSQLite3DB &database)
{
    ensureTaskTable(database);
    if (!database.tableExists(u"tasks"_s)) {
        return;
    }
    Transaction transaction(database);
    moveOlderRows(database);
    transaction.commit();
}

void checkTaskColumns(CppSQLite3DB &database)
{
    const CppSQLite3Query rows = database.execQuery(u"select rowid,* from tasks2"_s);
    bool isOurs = rows.numFields() == kTaskColumns.size() + 1;
    for (int column = 1; isOurs && column < rows.numFields(); ++column) {
        isOurs =
            rows.fieldName(column) == kTaskColumns.at(static_cast<std::size_t>(column - 1)).name;
    }
    if (!isOurs) {
        throw CppSQLite3Exception(kSqliteCorrupt, u"table tasks2 has other columns");
    }
}

} // namespace tollivar::tasks
