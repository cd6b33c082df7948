#include "tasks/internal/database_connection.h"

#include "tasks/db/sqlite3_exception.h"
#include "tasks/internal/task_schema.h"
#include "tasks/internal/transaction.h"

#include <QFile>

namespace tollivar::tasks {

using namespace Qt::StringLiterals;

namespace {

/// Makes the file for its owner alone, which the logs beside it inherit: it holds cookies.
void createPrivately(const QString &path)
{
    QFile file(path);
    // Whatever keeps it from being made, SQLite tells.
    static_cast<void>(
        file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner));
}

void configure(CppSQLite3DB &database)
{
    // Nothing in a database that somebody handed over may call functions or smuggle in odd cells.
    database.execDML(u"PRAGMA trusted_schema = OFF"_s);
    database.execDML(u"PRAGMA cell_size_check = ON"_s);
    database.execDML(u"PRAGMA journal_mode = WAL"_s);
    database.execDML(u"PRAGMA synchronous = FULL"_s);
}

void checkStructure(CppSQLite3DB &database)
{
    const QString verdict = database.execScalarText(u"PRAGMA quick_check(1)"_s);
    if (verdict != u"ok") {
        throw CppSQLite3Exception(kSqliteCorrupt,
                                  reinterpret_cast<const char16_t *>(verdict.utf16()));
    }
}

/// The statements are always the same, so one that is refused as wrong met a file that is.
void checkFile(CppSQLite3DB &database)
{
    constexpr int genericError = 1;
    try {
        configure(database);
        checkStructure(database);
    } catch (const CppSQLite3Exception &error) {
        if (error.errorCode() != genericError) {
            throw;
        }
        const QString detail = error.errorMessage();
        throw CppSQLite3Exception(kSqliteCorrupt,
                                  reinterpret_cast<const char16_t *>(detail.utf16()));
    }
}

void checkWritable(CppSQLite3DB &database)
{
    database.execDML(u"BEGIN IMMEDIATE"_s);
    database.execDML(u"COMMIT"_s);
}

bool hasNoTable(CppSQLite3DB &database)
{
    if (database.execScalar(u"select count(*) from sqlite_master"_s) > 0) {
        return false;
    }
    // Pages without a table to which they belong are what a broken first page leaves.
    if (database.execScalar(u"PRAGMA page_count"_s) > 1) {
        throw CppSQLite3Exception(kSqliteCorrupt, u"pages without a table");
    }
    return true;
}

} // namespace

void connectToTasks(CppSQLite3DB &database, const QString &path,
                    const std::function<void(CppSQLite3DB &)> &fillNew)
{
    createPrivately(path);
    CppSQLite3DB opened;
    opened.open(path);
    checkFile(opened);
    checkWritable(opened);
    Transaction transaction(opened);
    const bool isNew = hasNoTable(opened);
    ensureTaskTable(opened);
    checkTaskColumns(opened);
    if (isNew) {
        fillNew(opened);
    }
    transaction.commit();
    database = opened;
}

} // namespace tollivar::tasks
