#pragma once

#include "tasks/db/sqlite3_query.h"
#include "tasks/db/sqlite3_statement.h"

#include <QString>

#include <cstdint>
#include <memory>

namespace tollivar::tasks {

struct Connection;

/// One connection to a database file.
///
/// Threads: one thread at a time for all copies together.
/// Owns:    the connection, together with its copies; a copy begins with the default busy time-out
///          of its own. What one copy closes is closed for all; the last copy closes for itself.
/// States:  closed until open(); every operation but open(), close() and setBusyTimeout() needs an
///          open connection.
/// Errors:  everything throws CppSQLite3Exception; 1000 "Database not open" when it is closed.
class CppSQLite3DB {
public:
    static constexpr int kDefaultBusyTimeoutMs = 60000;

    CppSQLite3DB();
    ~CppSQLite3DB();
    CppSQLite3DB(const CppSQLite3DB &other);
    CppSQLite3DB &operator=(const CppSQLite3DB &other);

    /// Opens or creates the file. A connection that was open is let go first.
    void open(const QString &path);
    /// Opens an existing file for reading only.
    void openReadOnly(const QString &path);
    /// Legal when closed. Fails, and stays open, while queries or statements live.
    void close();
    [[nodiscard]] bool isOpen() const;

    /// `name` goes into the statement as it is: pass fixed names only.
    [[nodiscard]] bool tableExists(const QString &name);

    /// Runs one statement that gives no rows.
    void execDML(const QString &sql);
    /// Runs one statement and stands on its first row.
    [[nodiscard]] CppSQLite3Query execQuery(const QString &sql);
    /// First column of the first row; 1000 "Invalid scalar query" when there is no row.
    [[nodiscard]] int execScalar(const QString &sql);
    [[nodiscard]] QString execScalarText(const QString &sql);
    [[nodiscard]] CppSQLite3Statement compileStatement(const QString &sql);

    /// Row id of this connection's last insert, 0 before the first.
    [[nodiscard]] std::int64_t lastRowId() const;

    /// How long a statement waits for another connection's lock; kept for the next open() too.
    void setBusyTimeout(int milliseconds);

private:
    void adopt(std::shared_ptr<Connection> opened, int code);

    std::shared_ptr<Connection> m_connection;
    int m_busyTimeoutMs = kDefaultBusyTimeoutMs;
};

} // namespace tollivar::tasks
