#include "tasks/db/sqlite3_query.h"

#include "tasks/db/internal/connection.h"
#include "tasks/db/sqlite3_exception.h"

#include <sqlite3.h>

namespace tollivar::tasks {

namespace {

QString fromSqlite(const void *text)
{
    return QString::fromUtf16(static_cast<const char16_t *>(text));
}

} // namespace

CppSQLite3Query::CppSQLite3Query(std::shared_ptr<const Connection> connection,
                                 sqlite3_stmt *statement, bool isAtEnd, Ownership ownership)
    : m_connection(std::move(connection))
    , m_statement(statement)
    , m_isAtEnd(isAtEnd)
    , m_fieldCount(sqlite3_column_count(statement))
    , m_ownership(ownership)
{
}

CppSQLite3Query::~CppSQLite3Query()
{
    finalize();
}

CppSQLite3Query::CppSQLite3Query(const CppSQLite3Query &other)
{
    takeFrom(other);
}

CppSQLite3Query &CppSQLite3Query::operator=(const CppSQLite3Query &other)
{
    if (this != &other) {
        finalize();
        takeFrom(other);
    }
    return *this;
}

void CppSQLite3Query::takeFrom(const CppSQLite3Query &other)
{
    m_connection = other.m_connection;
    m_statement = std::exchange(other.m_statement, nullptr);
    m_isAtEnd = other.m_isAtEnd;
    m_fieldCount = other.m_fieldCount;
    m_ownership = other.m_ownership;
}

void CppSQLite3Query::checkStatement() const
{
    if (m_statement == nullptr) {
        throw CppSQLite3Exception(kCppSqliteError, u"Null Virtual Machine pointer");
    }
}

int CppSQLite3Query::checkedIndex(Field field) const
{
    if (const QStringView *name = std::get_if<QStringView>(&field)) {
        return fieldIndex(*name);
    }
    const int index = std::get<int>(field);
    if (index < 0 || index >= numFields()) {
        throw CppSQLite3Exception(kCppSqliteError, u"Invalid field index requested");
    }
    return index;
}

bool CppSQLite3Query::eof() const
{
    checkStatement();
    return m_isAtEnd;
}

void CppSQLite3Query::nextRow()
{
    // A step behind the end would run the statement anew.
    if (eof()) {
        return;
    }
    const int stepped = sqlite3_step(m_statement);
    if (stepped == SQLITE_ROW) {
        return;
    }
    m_isAtEnd = true;
    if (stepped == SQLITE_DONE) {
        return;
    }
    sqlite3 *handle = openHandle(m_connection);
    const bool owns = m_ownership == Ownership::Owns;
    const int code = owns ? sqlite3_finalize(m_statement) : sqlite3_reset(m_statement);
    m_statement = nullptr;
    throwConnectionError(handle, code);
}

void CppSQLite3Query::finalize()
{
    if (m_ownership == Ownership::Owns) {
        sqlite3_finalize(m_statement);
    }
    m_statement = nullptr;
}

int CppSQLite3Query::numFields() const
{
    checkStatement();
    return m_fieldCount;
}

int CppSQLite3Query::fieldIndex(QStringView name) const
{
    for (int index = 0; index < numFields(); ++index) {
        if (fieldName(index) == name) {
            return index;
        }
    }
    throw CppSQLite3Exception(kCppSqliteError, u"Invalid field name requested");
}

QString CppSQLite3Query::fieldName(int index) const
{
    const int checked = checkedIndex(index);
    return fromSqlite(sqlite3_column_name16(m_statement, checked));
}

QString CppSQLite3Query::fieldDeclType(int index) const
{
    const int checked = checkedIndex(index);
    return fromSqlite(sqlite3_column_decltype16(m_statement, checked));
}

int CppSQLite3Query::fieldDataType(int index) const
{
    const int checked = checkedIndex(index);
    return sqlite3_column_type(m_statement, checked);
}

QString CppSQLite3Query::fieldValue(Field field) const
{
    const int index = checkedIndex(field);
    const auto *text = static_cast<const QChar *>(sqlite3_column_text16(m_statement, index));
    if (text == nullptr) {
        return {};
    }
    constexpr int bytesPerCharacter = sizeof(QChar);
    return QString(text, sqlite3_column_bytes16(m_statement, index) / bytesPerCharacter);
}

int CppSQLite3Query::getIntField(Field field, int whenNull) const
{
    const int index = checkedIndex(field);
    return fieldIsNull(index) ? whenNull : sqlite3_column_int(m_statement, index);
}

std::int64_t CppSQLite3Query::getInt64Field(Field field, std::int64_t whenNull) const
{
    const int index = checkedIndex(field);
    return fieldIsNull(index) ? whenNull : sqlite3_column_int64(m_statement, index);
}

double CppSQLite3Query::getFloatField(Field field, double whenNull) const
{
    const int index = checkedIndex(field);
    return fieldIsNull(index) ? whenNull : sqlite3_column_double(m_statement, index);
}

QString CppSQLite3Query::getStringField(Field field, const QString &whenNull) const
{
    const int index = checkedIndex(field);
    return fieldIsNull(index) ? whenNull : fieldValue(index);
}

QByteArray CppSQLite3Query::getBlobField(Field field) const
{
    const int index = checkedIndex(field);
    const auto *bytes = static_cast<const char *>(sqlite3_column_blob(m_statement, index));
    return {bytes, sqlite3_column_bytes(m_statement, index)};
}

bool CppSQLite3Query::fieldIsNull(Field field) const
{
    return fieldDataType(checkedIndex(field)) == SQLITE_NULL;
}

} // namespace tollivar::tasks
