#include "tasks/db/sqlite3_exception.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::CppSQLite3Exception;

TEST(SqliteException, writesNameCodeAndDetail)
{
    const CppSQLite3Exception error(5, u"D");
    EXPECT_EQ(error.errorCode(), 5);
    EXPECT_EQ(error.errorMessage(), u"SQLITE_BUSY[5]: D"_s);
    EXPECT_STREQ(error.what(), "SQLITE_BUSY[5]: D");
}

TEST(SqliteException, leavesTheDetailEmptyWhenThereIsNone)
{
    EXPECT_EQ(CppSQLite3Exception(11).errorMessage(), u"SQLITE_CORRUPT[11]: "_s);
}

TEST(SqliteException, callsACodeWithoutANameUnknown)
{
    EXPECT_EQ(CppSQLite3Exception(42, u"D").errorMessage(), u"UNKNOWN_ERROR[42]: D"_s);
    EXPECT_EQ(CppSQLite3Exception::codeName(-1), u"UNKNOWN_ERROR"_s);
    EXPECT_EQ(CppSQLite3Exception::codeName(26), u"UNKNOWN_ERROR"_s);
    EXPECT_EQ(CppSQLite3Exception::codeName(99), u"UNKNOWN_ERROR"_s);
}

TEST(SqliteException, knowsEveryNamedCode)
{
    const char *const names[] = {
        "SQLITE_OK",       "SQLITE_ERROR",     "SQLITE_INTERNAL", "SQLITE_PERM",
        "SQLITE_ABORT",    "SQLITE_BUSY",      "SQLITE_LOCKED",   "SQLITE_NOMEM",
        "SQLITE_READONLY", "SQLITE_INTERRUPT", "SQLITE_IOERR",    "SQLITE_CORRUPT",
        "SQLITE_NOTFOUND", "SQLITE_FULL",      "SQLITE_CANTOPEN", "SQLITE_PROTOCOL",
        "SQLITE_EMPTY",    "SQLITE_SCHEMA",    "SQLITE_TOOBIG",   "SQLITE_CONSTRAINT",
        "SQLITE_MISMATCH", "SQLITE_MISUSE",    "SQLITE_NOLFS",    "SQLITE_AUTH",
        "SQLITE_FORMAT",   "SQLITE_RANGE"};
    int code = 0;
    for (const char *name : names) {
        EXPECT_EQ(CppSQLite3Exception::codeName(code++), QLatin1String(name));
    }
    EXPECT_EQ(CppSQLite3Exception::codeName(100), u"SQLITE_ROW"_s);
    EXPECT_EQ(CppSQLite3Exception::codeName(101), u"SQLITE_DONE"_s);
    EXPECT_EQ(CppSQLite3Exception::codeName(1000), u"CPPSQLITE_ERROR"_s);
}

TEST(SqliteException, freesADetailThatSqliteAllocated)
{
    // A leak would be found by AddressSanitizer; so would a second release by the copy.
    auto *detail = static_cast<char16_t *>(sqlite3_malloc(2 * sizeof(char16_t)));
    detail[0] = u'D';
    detail[1] = u'\0';
    const CppSQLite3Exception error(1, detail, CppSQLite3Exception::Detail::FromSqlite);
    const CppSQLite3Exception copy(error);
    EXPECT_EQ(copy.errorMessage(), u"SQLITE_ERROR[1]: D"_s);
}

TEST(SqliteException, tellsADamagedFileAndABusyOne)
{
    for (const int code : {11, 24, 26}) {
        EXPECT_TRUE(CppSQLite3Exception(code).isDamagedFile()) << code;
    }
    for (const int code : {0, 1, 5, 8, 10, 13, 14, 19, 1000}) {
        EXPECT_FALSE(CppSQLite3Exception(code).isDamagedFile()) << code;
    }
    EXPECT_TRUE(CppSQLite3Exception(5).isBusy());
    EXPECT_TRUE(CppSQLite3Exception(6).isBusy());
    EXPECT_FALSE(CppSQLite3Exception(1).isBusy());
}

} // namespace tollivar::test
