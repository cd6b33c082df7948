#include "tasks/stored_tasks.h"

#include "tasks/db/sqlite3_db.h"
#include "tasks/db/sqlite3_exception.h"
#include "tasks/internal/task_rows.h"

#include <QFileInfo>

namespace tollivar::tasks {

using namespace Qt::StringLiterals;

platform::Result<std::vector<StoredTask>> readStoredTasks(const QString &databasePath)
{
    std::vector<StoredTask> tasks;
    if (!QFileInfo::exists(databasePath)) {
        return tasks;
    }
    try {
        CppSQLite3DB database;
        database.openReadOnly(databasePath);
        if (!database.tableExists(u"tasks2"_s)) {
            return tasks;
        }
        CppSQLite3Query rows = database.execQuery(u"select rowid,* from tasks2"_s);
        const TaskRowReader reader(rows);
        for (; !rows.eof(); rows.nextRow()) {
            tasks.push_back({rows.getInt64Field(0), reader.read(rows)});
        }
        return tasks;
    } catch (const CppSQLite3Exception &error) {
        return platform::failure(platform::ErrorKind::AskUser,
                                 u"%1: %2"_s.arg(databasePath, error.errorMessage()),
                                 error.errorCode());
    }
}

} // namespace tollivar::tasks
