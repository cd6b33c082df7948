#include "tasks/db/sqlite3_statement.h"

#include "tasks/db/internal/connection.h"
#include "tasks/db/sqlite3_exception.h"

#include <sqlite3.h>

namespace tollivar::tasks {

namespace {

void checkBind(int code, const char16_t *complaint)
{
    if (code != SQLITE_OK) {
        throw CppSQLite3Exception(kCppSqliteError, complaint);
    }
}

} // namespace

CppSQLite3Statement::CppSQLite3Statement(std::shared_ptr<const Connection> connection,
                                         sqlite3_stmt *statement)
    : m_connection(std::move(connection))
    , m_statement(statement)
{
}

CppSQLite3Statement::~CppSQLite3Statement()
{
    finalize();
}

CppSQLite3Statement::CppSQLite3Statement(CppSQLite3Statement &&other) noexcept
    : m_connection(std::move(other.m_connection))
    , m_statement(std::exchange(other.m_statement, nullptr))
{
}

CppSQLite3Statement &CppSQLite3Statement::operator=(CppSQLite3Statement &&other) noexcept
{
    if (this != &other) {
        finalize();
        m_connection = std::move(other.m_connection);
        m_statement = std::exchange(other.m_statement, nullptr);
    }
    return *this;
}

sqlite3_stmt *CppSQLite3Statement::statement() const
{
    if (m_statement == nullptr) {
        throw CppSQLite3Exception(kCppSqliteError, u"Null Virtual Machine pointer");
    }
    return m_statement;
}

void CppSQLite3Statement::bind(int index, QStringView text)
{
    // A null pointer would bind NULL.
    const void *data = text.isNull() ? u"" : text.utf16();
    const auto bytes = static_cast<sqlite3_uint64>(text.size()) * sizeof(char16_t);
    checkBind(sqlite3_bind_text64(statement(), index, static_cast<const char *>(data), bytes,
                                  SQLITE_TRANSIENT, SQLITE_UTF16),
              u"Error binding string param");
}

void CppSQLite3Statement::bind(int index, int number)
{
    checkBind(sqlite3_bind_int(statement(), index, number), u"Error binding int param");
}

void CppSQLite3Statement::bind(int index, double number)
{
    checkBind(sqlite3_bind_double(statement(), index, number), u"Error binding double param");
}

void CppSQLite3Statement::bind(int index, QByteArrayView blob)
{
    const void *data = blob.isNull() ? "" : blob.data();
    checkBind(sqlite3_bind_blob64(statement(), index, data,
                                  static_cast<sqlite3_uint64>(blob.size()), SQLITE_TRANSIENT),
              u"Error binding blob param");
}

void CppSQLite3Statement::bindNull(int index)
{
    checkBind(sqlite3_bind_null(statement(), index), u"Error binding NULL param");
}

int CppSQLite3Statement::execDML()
{
    sqlite3 *handle = openHandle(m_connection);
    const int stepped = sqlite3_step(statement());
    const int changes = sqlite3_changes(handle);
    const int code = sqlite3_reset(m_statement);
    if (stepped != SQLITE_DONE && stepped != SQLITE_ROW) {
        throwConnectionError(handle, code);
    }
    return changes;
}

CppSQLite3Query CppSQLite3Statement::execQuery()
{
    sqlite3 *handle = openHandle(m_connection);
    const int stepped = sqlite3_step(statement());
    if (stepped == SQLITE_ROW || stepped == SQLITE_DONE) {
        return {m_connection, m_statement, stepped == SQLITE_DONE,
                CppSQLite3Query::Ownership::Borrows};
    }
    throwConnectionError(handle, sqlite3_reset(m_statement));
}

void CppSQLite3Statement::reset()
{
    const int code = sqlite3_reset(statement());
    if (code != SQLITE_OK) {
        throwConnectionError(openHandle(m_connection), code);
    }
}

void CppSQLite3Statement::finalize()
{
    sqlite3_finalize(m_statement);
    m_statement = nullptr;
}

} // namespace tollivar::tasks
