#include "tasks/internal/transaction.h"

#include "tasks/db/sqlite3_exception.h"

namespace tollivar::tasks {

using namespace Qt::StringLiterals;

Transaction::Transaction(CppSQLite3DB &database) : m_database(database)
{
    m_database.execDML(u"SAVEPOINT work"_s);
}

Transaction::~Transaction()
{
    if (!m_isOpen) {
        return;
    }
    try {
        m_database.execDML(u"ROLLBACK TO work"_s);
        m_database.execDML(u"RELEASE work"_s);
    } catch (const CppSQLite3Exception &) {
        // SQLite undoes a transaction by itself when the disk is full: then there is none left.
    }
}

void Transaction::commit()
{
    m_database.execDML(u"RELEASE work"_s);
    m_isOpen = false;
}

} // namespace tollivar::tasks
