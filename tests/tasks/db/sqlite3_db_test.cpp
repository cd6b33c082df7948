#include "tasks/db/sqlite3_db.h"
#include "tests/support/sandbox.h"
#include "tests/tasks/db/message_of.h"

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::CppSQLite3DB;
using tasks::CppSQLite3Query;

const QString kNotOpen = u"CPPSQLITE_ERROR[1000]: Database not open"_s;

class SqliteDbTest : public testing::Test {
protected:
    SqliteDbTest() { database.open(sandbox.file(u"test.db"_s)); }

    Sandbox sandbox;
    CppSQLite3DB database;
};

TEST_F(SqliteDbTest, runsStatementsAndReadsValues)
{
    database.execDML(u"CREATE TABLE t(n INTEGER, s NTEXT)"_s);
    database.execDML(u"INSERT INTO t VALUES('7','seven')"_s);
    EXPECT_EQ(database.lastRowId(), 1);
    EXPECT_EQ(database.execScalar(u"select n from t"_s), 7);
    EXPECT_EQ(database.execScalarText(u"select s from t"_s), u"seven"_s);
}

TEST_F(SqliteDbTest, makesANewFileInUtf16)
{
    database.execDML(u"CREATE TABLE t(n)"_s);
    EXPECT_EQ(database.execScalarText(u"PRAGMA encoding"_s), u"UTF-16le"_s);
}

TEST_F(SqliteDbTest, opensAPathOutsideLatin)
{
    CppSQLite3DB other;
    other.open(sandbox.file(u"списък 任务.db"_s));
    other.execDML(u"CREATE TABLE t(n)"_s);
    other.close();
    other.openReadOnly(sandbox.file(u"списък 任务.db"_s));
    EXPECT_TRUE(other.tableExists(u"t"_s));
}

TEST_F(SqliteDbTest, refusesEveryOperationWhenItIsClosed)
{
    CppSQLite3DB closed;
    EXPECT_FALSE(closed.isOpen());
    EXPECT_EQ(messageOf([&] { closed.execDML(u"select 1"_s); }), kNotOpen);
    EXPECT_EQ(messageOf([&] { return closed.execQuery(u"select 1"_s); }), kNotOpen);
    EXPECT_EQ(messageOf([&] { return closed.execScalar(u"select 1"_s); }), kNotOpen);
    EXPECT_EQ(messageOf([&] { return closed.tableExists(u"t"_s); }), kNotOpen);
    EXPECT_EQ(messageOf([&] { return closed.compileStatement(u"select 1"_s); }), kNotOpen);
    EXPECT_EQ(messageOf([&] { return closed.lastRowId(); }), kNotOpen);
    EXPECT_EQ(messageOf([&] { closed.close(); }), QString());
}

TEST_F(SqliteDbTest, tellsWhyAFileCannotBeOpened)
{
    CppSQLite3DB other;
    EXPECT_EQ(messageOf([&] { other.open(sandbox.file(u"missing/test.db"_s)); }),
              u"SQLITE_CANTOPEN[14]: unable to open database file"_s);
    EXPECT_FALSE(other.isOpen());
    EXPECT_EQ(messageOf([&] { other.openReadOnly(sandbox.file(u"missing.db"_s)); }),
              u"SQLITE_CANTOPEN[14]: unable to open database file"_s);
}

TEST_F(SqliteDbTest, staysOpenWhenItCannotCloseForALivingQuery)
{
    database.execDML(u"CREATE TABLE t(n)"_s);
    database.execDML(u"INSERT INTO t VALUES('1')"_s);
    CppSQLite3Query query = database.execQuery(u"select * from t"_s);
    EXPECT_TRUE(messageOf([&] { database.close(); }).startsWith(u"SQLITE_BUSY[5]: "));
    EXPECT_TRUE(database.isOpen());
    query.finalize();
    database.close();
    EXPECT_FALSE(database.isOpen());
}

TEST_F(SqliteDbTest, lendsItsHandleToCopies)
{
    CppSQLite3DB copy(database);
    copy.execDML(u"CREATE TABLE t(n)"_s);
    EXPECT_TRUE(database.tableExists(u"t"_s));
    CppSQLite3DB assigned;
    assigned = database;
    EXPECT_TRUE(assigned.tableExists(u"t"_s));
    // One closes for all, and none is left with a handle that is gone.
    database.close();
    EXPECT_FALSE(copy.isOpen());
    EXPECT_EQ(messageOf([&] { assigned.execDML(u"DROP TABLE t"_s); }), kNotOpen);
}

TEST_F(SqliteDbTest, livesOnInItsCopy)
{
    auto original = std::make_unique<CppSQLite3DB>(database);
    const CppSQLite3DB copy(*original);
    original.reset();
    EXPECT_TRUE(copy.isOpen());
}

TEST_F(SqliteDbTest, letsAQueryOutliveTheConnection)
{
    database.execDML(u"CREATE TABLE t(n)"_s);
    database.execDML(u"INSERT INTO t VALUES('1')"_s);
    CppSQLite3Query query = database.execQuery(u"select * from t"_s);
    database = CppSQLite3DB();
    EXPECT_EQ(query.getIntField(0), 1);
    query.nextRow();
    EXPECT_TRUE(query.eof());
}

TEST_F(SqliteDbTest, knowsWhetherATableExists)
{
    EXPECT_FALSE(database.tableExists(u"t"_s));
    database.execDML(u"CREATE TABLE t(n)"_s);
    EXPECT_TRUE(database.tableExists(u"t"_s));
    EXPECT_FALSE(database.tableExists(u""_s));
}

TEST_F(SqliteDbTest, putsATableNameIntoTheStatementAsItIs)
{
    EXPECT_TRUE(messageOf([&] {
                    return database.tableExists(u"it's"_s);
                }).startsWith(u"SQLITE_ERROR[1]: "));
}

TEST_F(SqliteDbTest, throwsForATextThatIsNoStatement)
{
    EXPECT_EQ(messageOf([&] { database.execDML(u"CREATE TABEL t(n)"_s); }),
              u"SQLITE_ERROR[1]: near \"TABEL\": syntax error"_s);
}

TEST_F(SqliteDbTest, throwsTheTrueCodeOfAFailedStep)
{
    database.execDML(u"CREATE TABLE t(n UNIQUE)"_s);
    database.execDML(u"INSERT INTO t VALUES(1)"_s);
    const QString expected = u"SQLITE_CONSTRAINT[19]: UNIQUE constraint failed: t.n"_s;
    EXPECT_EQ(messageOf([&] { database.execDML(u"INSERT INTO t VALUES(1)"_s); }), expected);
    EXPECT_EQ(messageOf([&] { return database.execQuery(u"INSERT INTO t VALUES(1)"_s); }),
              expected);
}

TEST_F(SqliteDbTest, preparesAnewWhenTheSchemaChangedBehindIt)
{
    database.execDML(u"CREATE TABLE t(n)"_s);
    EXPECT_TRUE(database.tableExists(u"t"_s));
    CppSQLite3DB other;
    other.open(sandbox.file(u"test.db"_s));
    for (int round = 0; round < 3; ++round) {
        other.execDML(u"CREATE TABLE more%1(n)"_s.arg(round));
        database.execDML(u"INSERT INTO t VALUES(1)"_s);
        other.execDML(u"DROP TABLE more%1"_s.arg(round));
        EXPECT_EQ(database.execScalar(u"select count(*) from t"_s), round + 1);
    }
}

TEST_F(SqliteDbTest, throwsWhenAnotherConnectionHoldsTheFileLongerThanTheTimeout)
{
    database.execDML(u"CREATE TABLE t(n)"_s);
    CppSQLite3DB holder;
    holder.open(sandbox.file(u"test.db"_s));
    holder.execDML(u"BEGIN EXCLUSIVE"_s);
    database.setBusyTimeout(1);
    EXPECT_EQ(messageOf([&] { database.execDML(u"INSERT INTO t VALUES(1)"_s); }),
              u"SQLITE_BUSY[5]: database is locked"_s);
    EXPECT_EQ(messageOf([&] { return database.execQuery(u"select * from t"_s); }),
              u"SQLITE_BUSY[5]: database is locked"_s);
    holder.execDML(u"COMMIT"_s);
    database.execDML(u"INSERT INTO t VALUES(1)"_s);
}

TEST_F(SqliteDbTest, keepsItsTimeoutOverAnOpenAndGivesCopiesTheDefault)
{
    const auto timeoutOf = [](CppSQLite3DB &connection) {
        return connection.execScalar(u"PRAGMA busy_timeout"_s);
    };
    EXPECT_EQ(timeoutOf(database), 60000);
    database.setBusyTimeout(250);
    EXPECT_EQ(timeoutOf(database), 250);
    database.open(sandbox.file(u"second.db"_s));
    EXPECT_EQ(timeoutOf(database), 250);
    CppSQLite3DB copy(database);
    copy.open(sandbox.file(u"third.db"_s));
    EXPECT_EQ(timeoutOf(copy), 60000);
}

TEST_F(SqliteDbTest, refusesAScalarOfNoRows)
{
    const QString expected = u"CPPSQLITE_ERROR[1000]: Invalid scalar query"_s;
    database.execDML(u"CREATE TABLE t(n)"_s);
    EXPECT_EQ(messageOf([&] { return database.execScalar(u"select n from t"_s); }), expected);
    EXPECT_EQ(messageOf([&] { return database.execScalarText(u"select n from t"_s); }), expected);
}

TEST_F(SqliteDbTest, writesNothingThroughAReadOnlyConnection)
{
    database.execDML(u"CREATE TABLE t(n)"_s);
    CppSQLite3DB reader;
    reader.openReadOnly(sandbox.file(u"test.db"_s));
    EXPECT_EQ(messageOf([&] { reader.execDML(u"INSERT INTO t VALUES(1)"_s); }),
              u"SQLITE_READONLY[8]: attempt to write a readonly database"_s);
}

TEST_F(SqliteDbTest, findsNoRowsInATextWithoutAStatement)
{
    database.execDML(u" "_s);
    EXPECT_TRUE(
        messageOf([&] { return database.execQuery(u" "_s); }).startsWith(u"SQLITE_MISUSE[21]: "));
}

} // namespace tollivar::test
