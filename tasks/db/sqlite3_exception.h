#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace tollivar::tasks {

/// Code of the errors that this layer finds itself; all others are SQLite's.
inline constexpr int kCppSqliteError = 1000;
/// SQLite's code of a damaged file, for callers who find damage themselves.
inline constexpr int kSqliteCorrupt = 11;

/// A failed database operation: SQLite's code and a message "NAME[code]: detail".
///
/// Threads: a value; copies are independent.
class CppSQLite3Exception final : public std::exception {
public:
    /// Who frees the detail text.
    enum class Detail {
        Borrowed,  ///< the caller, or nobody
        FromSqlite ///< the constructor, by SQLite's own function
    };

    /// A null `detail` counts as an empty one.
    explicit CppSQLite3Exception(int code, const char16_t *detail = nullptr,
                                 Detail owner = Detail::Borrowed);

    [[nodiscard]] int errorCode() const { return m_code; }
    [[nodiscard]] QString errorMessage() const { return m_message; }
    /// The message in UTF-8.
    [[nodiscard]] const char *what() const noexcept override { return m_what.constData(); }

    /// The file itself is broken or is no database: neither waiting nor another statement helps.
    [[nodiscard]] bool isDamagedFile() const;
    /// Another connection holds the file.
    [[nodiscard]] bool isBusy() const;

    /// "SQLITE_BUSY" for 5; "UNKNOWN_ERROR" for a code that has no name.
    [[nodiscard]] static QString codeName(int code);

private:
    int m_code;
    QString m_message;
    QByteArray m_what;
};

} // namespace tollivar::tasks
