#include "tasks/db/internal/connection.h"

#include "tasks/db/sqlite3_exception.h"

#include <sqlite3.h>

#include <limits>

namespace tollivar::tasks {

Connection::~Connection()
{
    sqlite3_close_v2(handle);
}

sqlite3 *openHandle(const SharedConnection &connection)
{
    if (!connection || connection->handle == nullptr) {
        throw CppSQLite3Exception(kCppSqliteError, u"Database not open");
    }
    return connection->handle;
}

sqlite3_stmt *prepare(sqlite3 *handle, QStringView sql)
{
    const qsizetype bytes = sql.size() * qsizetype{sizeof(char16_t)};
    if (bytes > std::numeric_limits<int>::max()) {
        throw CppSQLite3Exception(SQLITE_TOOBIG, u"Statement too long");
    }
    sqlite3_stmt *statement = nullptr;
    const int code =
        sqlite3_prepare16(handle, sql.utf16(), static_cast<int>(bytes), &statement, nullptr);
    if (code != SQLITE_OK) {
        throwConnectionError(handle, code);
    }
    return statement;
}

void throwConnectionError(sqlite3 *handle, int code)
{
    throw CppSQLite3Exception(code, static_cast<const char16_t *>(sqlite3_errmsg16(handle)));
}

} // namespace tollivar::tasks
