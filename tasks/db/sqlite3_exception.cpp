#include "tasks/db/sqlite3_exception.h"

#include <sqlite3.h>

#include <array>

namespace tollivar::tasks {

using namespace Qt::StringLiterals;

namespace {

struct CodeName {
    int code = 0;
    QStringView name;
};

constexpr std::array kCodeNames{
    CodeName{0, u"SQLITE_OK"},
    CodeName{1, u"SQLITE_ERROR"},
    CodeName{2, u"SQLITE_INTERNAL"},
    CodeName{3, u"SQLITE_PERM"},
    CodeName{4, u"SQLITE_ABORT"},
    CodeName{5, u"SQLITE_BUSY"},
    CodeName{6, u"SQLITE_LOCKED"},
    CodeName{7, u"SQLITE_NOMEM"},
    CodeName{8, u"SQLITE_READONLY"},
    CodeName{9, u"SQLITE_INTERRUPT"},
    CodeName{10, u"SQLITE_IOERR"},
    CodeName{11, u"SQLITE_CORRUPT"},
    CodeName{12, u"SQLITE_NOTFOUND"},
    CodeName{13, u"SQLITE_FULL"},
    CodeName{14, u"SQLITE_CANTOPEN"},
    CodeName{15, u"SQLITE_PROTOCOL"},
    CodeName{16, u"SQLITE_EMPTY"},
    CodeName{17, u"SQLITE_SCHEMA"},
    CodeName{18, u"SQLITE_TOOBIG"},
    CodeName{19, u"SQLITE_CONSTRAINT"},
    CodeName{20, u"SQLITE_MISMATCH"},
    CodeName{21, u"SQLITE_MISUSE"},
    CodeName{22, u"SQLITE_NOLFS"},
    CodeName{23, u"SQLITE_AUTH"},
    CodeName{24, u"SQLITE_FORMAT"},
    CodeName{25, u"SQLITE_RANGE"},
    CodeName{100, u"SQLITE_ROW"},
    CodeName{101, u"SQLITE_DONE"},
    CodeName{kCppSqliteError, u"CPPSQLITE_ERROR"},
};

static_assert(kSqliteCorrupt == SQLITE_CORRUPT);

} // namespace

CppSQLite3Exception::CppSQLite3Exception(int code, const char16_t *detail, Detail owner)
    : m_code(code)
    , m_message(codeName(code) + u'[' + QString::number(code) + u"]: "_s +
                QString::fromUtf16(detail))
    , m_what(m_message.toUtf8())
{
    if (owner == Detail::FromSqlite) {
        sqlite3_free(const_cast<char16_t *>(detail));
    }
}

bool CppSQLite3Exception::isDamagedFile() const
{
    return m_code == SQLITE_CORRUPT || m_code == SQLITE_NOTADB || m_code == SQLITE_FORMAT;
}

bool CppSQLite3Exception::isBusy() const
{
    return m_code == SQLITE_BUSY || m_code == SQLITE_LOCKED;
}

QString CppSQLite3Exception::codeName(int code)
{
    const auto *found = std::find_if(kCodeNames.begin(), kCodeNames.end(),
                                     [code](const CodeName &entry) { return entry.code == code; });
    return found == kCodeNames.end() ? u"UNKNOWN_ERROR"_s : found->name.toString();
}

} // namespace tollivar::tasks
