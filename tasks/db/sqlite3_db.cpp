#include "tasks/db/sqlite3_db.h"

#include "tasks/db/internal/connection.h"
#include "tasks/db/sqlite3_exception.h"

#include <sqlite3.h>

namespace tollivar::tasks {

using namespace Qt::StringLiterals;

namespace {

/// A schema that changes under every attempt belongs to a damaged file; SQLite itself tries as
/// often.
constexpr int kSchemaAttempts = 50;

} // namespace

CppSQLite3DB::CppSQLite3DB() = default;
CppSQLite3DB::~CppSQLite3DB() = default;

CppSQLite3DB::CppSQLite3DB(const CppSQLite3DB &other) : m_connection(other.m_connection) {}

CppSQLite3DB &CppSQLite3DB::operator=(const CppSQLite3DB &other)
{
    if (this != &other) {
        m_connection = other.m_connection;
        m_busyTimeoutMs = kDefaultBusyTimeoutMs;
    }
    return *this;
}

void CppSQLite3DB::open(const QString &path)
{
    auto opened = std::make_shared<Connection>();
    const int code = sqlite3_open16(path.utf16(), &opened->handle);
    adopt(std::move(opened), code);
}

void CppSQLite3DB::openReadOnly(const QString &path)
{
    auto opened = std::make_shared<Connection>();
    const int code =
        sqlite3_open_v2(path.toUtf8().constData(), &opened->handle, SQLITE_OPEN_READONLY, nullptr);
    adopt(std::move(opened), code);
}

void CppSQLite3DB::adopt(std::shared_ptr<Connection> opened, int code)
{
    m_connection.reset();
    // A failed open leaves a handle that holds the message; dropping it frees it.
    if (code != SQLITE_OK) {
        throwConnectionError(opened->handle, code);
    }
    m_connection = std::move(opened);
    setBusyTimeout(m_busyTimeoutMs);
}

void CppSQLite3DB::close()
{
    if (!isOpen()) {
        return;
    }
    const int code = sqlite3_close(m_connection->handle);
    if (code != SQLITE_OK) {
        throwConnectionError(m_connection->handle, code);
    }
    m_connection->handle = nullptr;
    m_connection.reset();
}

bool CppSQLite3DB::isOpen() const
{
    return m_connection && m_connection->handle != nullptr;
}

bool CppSQLite3DB::tableExists(const QString &name)
{
    return execScalar(u"select count(*) from sqlite_master where type='table' and name='"_s + name +
                      u'\'') > 0;
}

void CppSQLite3DB::execDML(const QString &sql)
{
    sqlite3 *handle = openHandle(m_connection);
    int code = SQLITE_SCHEMA;
    for (int attempt = 0; code == SQLITE_SCHEMA && attempt < kSchemaAttempts; ++attempt) {
        sqlite3_stmt *statement = prepare(handle, sql);
        // What the step found, finalizing tells by its true code.
        sqlite3_step(statement);
        code = sqlite3_finalize(statement);
    }
    if (code != SQLITE_OK) {
        throwConnectionError(handle, code);
    }
}

CppSQLite3Query CppSQLite3DB::execQuery(const QString &sql)
{
    sqlite3 *handle = openHandle(m_connection);
    int code = SQLITE_SCHEMA;
    for (int attempt = 0; code == SQLITE_SCHEMA && attempt < kSchemaAttempts; ++attempt) {
        sqlite3_stmt *statement = prepare(handle, sql);
        const int stepped = sqlite3_step(statement);
        if (stepped == SQLITE_ROW || stepped == SQLITE_DONE) {
            return {m_connection, statement, stepped == SQLITE_DONE,
                    CppSQLite3Query::Ownership::Owns};
        }
        code = sqlite3_finalize(statement);
        // Text without a statement fails in the step and has nothing to finalize.
        if (code == SQLITE_OK) {
            code = stepped;
        }
    }
    throwConnectionError(handle, code);
}

int CppSQLite3DB::execScalar(const QString &sql)
{
    const CppSQLite3Query query = execQuery(sql);
    if (query.eof() || query.numFields() < 1) {
        throw CppSQLite3Exception(kCppSqliteError, u"Invalid scalar query");
    }
    return query.getIntField(0);
}

QString CppSQLite3DB::execScalarText(const QString &sql)
{
    const CppSQLite3Query query = execQuery(sql);
    if (query.eof() || query.numFields() < 1) {
        throw CppSQLite3Exception(kCppSqliteError, u"Invalid scalar query");
    }
    return query.getStringField(0);
}

CppSQLite3Statement CppSQLite3DB::compileStatement(const QString &sql)
{
    return {m_connection, prepare(openHandle(m_connection), sql)};
}

std::int64_t CppSQLite3DB::lastRowId() const
{
    return sqlite3_last_insert_rowid(openHandle(m_connection));
}

void CppSQLite3DB::setBusyTimeout(int milliseconds)
{
    m_busyTimeoutMs = milliseconds;
    if (isOpen()) {
        sqlite3_busy_timeout(m_connection->handle, milliseconds);
    }
}

} // namespace tollivar::tasks
