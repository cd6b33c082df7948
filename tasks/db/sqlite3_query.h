#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>
#include <variant>

struct sqlite3_stmt;

namespace tollivar::tasks {

struct Connection;

/// The rows of one result, walked from the first to the last.
///
/// Threads: the connection's.
/// Owns:    the statement, unless a CppSQLite3Statement made the query: then it borrows it and must
///          not outlive it. Copying hands the statement over: the source is without one after that.
/// States:  made on the first row, or at the end when there is none; nextRow() until eof().
/// Errors:  everything but finalize() throws CppSQLite3Exception: 1000 "Null Virtual Machine
///          pointer" without a statement, "Invalid field index requested", "Invalid field name
///          requested".
class CppSQLite3Query {
public:
    enum class Ownership { Owns, Borrows };
    /// A column by its index from 0, or by its name, compared exactly.
    using Field = std::variant<int, QStringView>;

    CppSQLite3Query() = default;
    CppSQLite3Query(std::shared_ptr<const Connection> connection, sqlite3_stmt *statement,
                    bool isAtEnd, Ownership ownership);
    ~CppSQLite3Query();
    CppSQLite3Query(const CppSQLite3Query &other);
    CppSQLite3Query &operator=(const CppSQLite3Query &other);

    [[nodiscard]] bool eof() const;
    /// Does nothing at the end.
    void nextRow();
    /// Lets the statement go; legal at any time.
    void finalize();

    [[nodiscard]] int numFields() const;
    [[nodiscard]] int fieldIndex(QStringView name) const;
    [[nodiscard]] QString fieldName(int index) const;
    /// The declared type; empty for an expression.
    [[nodiscard]] QString fieldDeclType(int index) const;
    /// SQLite's type code of the present value.
    [[nodiscard]] int fieldDataType(int index) const;

    /// As text, whatever the type; null for NULL.
    [[nodiscard]] QString fieldValue(Field field) const;
    [[nodiscard]] int getIntField(Field field, int whenNull = 0) const;
    [[nodiscard]] std::int64_t getInt64Field(Field field, std::int64_t whenNull = 0) const;
    [[nodiscard]] double getFloatField(Field field, double whenNull = 0) const;
    [[nodiscard]] QString getStringField(Field field, const QString &whenNull = {}) const;
    [[nodiscard]] QByteArray getBlobField(Field field) const;
    [[nodiscard]] bool fieldIsNull(Field field) const;

private:
    void checkStatement() const;
    [[nodiscard]] int checkedIndex(Field field) const;
    void takeFrom(const CppSQLite3Query &other);

    std::shared_ptr<const Connection> m_connection;
    mutable sqlite3_stmt *m_statement = nullptr; ///< mutable: a copy takes it away
    bool m_isAtEnd = true;
    int m_fieldCount = 0;
    Ownership m_ownership = Ownership::Borrows;
};

} // namespace tollivar::tasks
