#pragma once

#include "tasks/db/sqlite3_query.h"

#include <QByteArrayView>
#include <QStringView>

#include <memory>

struct sqlite3_stmt;

namespace tollivar::tasks {

struct Connection;

/// One prepared statement that is run many times with other values.
///
/// Threads: the connection's.
/// Owns:    the statement; values that are bound are copied.
/// Errors:  everything but finalize() throws CppSQLite3Exception: 1000 "Null Virtual Machine
///          pointer" without a prepared statement, 1000 "Database not open" without a connection,
///          1000 "Error binding … param" when a value cannot be bound.
class CppSQLite3Statement {
public:
    CppSQLite3Statement() = default;
    CppSQLite3Statement(std::shared_ptr<const Connection> connection, sqlite3_stmt *statement);
    ~CppSQLite3Statement();
    CppSQLite3Statement(CppSQLite3Statement &&other) noexcept;
    CppSQLite3Statement &operator=(CppSQLite3Statement &&other) noexcept;
    CppSQLite3Statement(const CppSQLite3Statement &) = delete;
    CppSQLite3Statement &operator=(const CppSQLite3Statement &) = delete;

    /// Parameters count from 1.
    void bind(int index, QStringView text);
    void bind(int index, int number);
    void bind(int index, double number);
    void bind(int index, QByteArrayView blob);
    void bindNull(int index);

    /// Runs the statement, makes it ready for the next run and returns the changed rows.
    int execDML();
    /// The rows; they live in this statement until reset() or finalize().
    [[nodiscard]] CppSQLite3Query execQuery();
    void reset();
    void finalize();

private:
    [[nodiscard]] sqlite3_stmt *statement() const;

    std::shared_ptr<const Connection> m_connection;
    sqlite3_stmt *m_statement = nullptr;
};

} // namespace tollivar::tasks
