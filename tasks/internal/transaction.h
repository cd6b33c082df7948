#pragma once

#include "tasks/db/sqlite3_db.h"

namespace tollivar::tasks {

/// Statements that count together or not at all. May be nested: only the outermost commits.
///
/// Owns:   the transaction; destroyed without commit() it undoes what was written since it began.
/// Errors: the constructor and commit() throw CppSQLite3Exception.
class Transaction {
public:
    explicit Transaction(CppSQLite3DB &database);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    void commit();

private:
    CppSQLite3DB &m_database;
    bool m_isOpen = true;
};

} // namespace tollivar::tasks
