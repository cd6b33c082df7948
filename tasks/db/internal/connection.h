#pragma once

#include <QStringView>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace tollivar::tasks {

/// The handle that copies of one CppSQLite3DB share; null once any of them has closed it.
///
/// Owns: the handle. A connection that is dropped while statements live ends with the last of them.
struct Connection {
    Connection() = default;
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    sqlite3 *handle = nullptr;
};

using SharedConnection = std::shared_ptr<const Connection>;

/// The open handle, or CppSQLite3Exception "Database not open".
[[nodiscard]] sqlite3 *openHandle(const SharedConnection &connection);

/// A statement of the old protocol: a failed step says 1, finalizing or resetting it tells the
/// true code, and a changed schema is reported instead of being mended silently. Only the first
/// statement of the text counts; an empty text gives a null statement.
[[nodiscard]] sqlite3_stmt *prepare(sqlite3 *handle, QStringView sql);

/// CppSQLite3Exception with the code and the connection's own message.
[[noreturn]] void throwConnectionError(sqlite3 *handle, int code);

} // namespace tollivar::tasks
