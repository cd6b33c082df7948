#include "tasks/db/sqlite3_db.h"
#include "tasks/db/sqlite3_query.h"
#include "tests/support/sandbox.h"
#include "tests/tasks/db/message_of.h"

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::CppSQLite3DB;
using tasks::CppSQLite3Query;
using tasks::CppSQLite3Statement;

namespace {

const QString kNoStatement = u"CPPSQLITE_ERROR[1000]: Null Virtual Machine pointer"_s;

} // namespace

class SqliteQueryTest : public testing::Test {
protected:
    SqliteQueryTest()
    {
        database.open(sandbox.file(u"test.db"_s));
        database.execDML(u"CREATE TABLE t(n INTEGER, f REAL, s NVARCHAR(50), b BLOB)"_s);
        database.execDML(u"INSERT INTO t VALUES(5000000000, 1.5, 'text', x'00ff41')"_s);
        database.execDML(u"INSERT INTO t VALUES(NULL, NULL, NULL, NULL)"_s);
    }

    [[nodiscard]] CppSQLite3Query all() { return database.execQuery(u"select * from t"_s); }

    Sandbox sandbox;
    CppSQLite3DB database;
};

TEST_F(SqliteQueryTest, walksTheRowsToTheEndAndStaysThere)
{
    CppSQLite3Query query = all();
    EXPECT_FALSE(query.eof());
    query.nextRow();
    EXPECT_FALSE(query.eof());
    query.nextRow();
    EXPECT_TRUE(query.eof());
    query.nextRow();
    EXPECT_TRUE(query.eof());
}

TEST_F(SqliteQueryTest, isAtTheEndAtOnceWithoutRows)
{
    EXPECT_TRUE(database.execQuery(u"select * from t where n=1"_s).eof());
}

TEST_F(SqliteQueryTest, describesItsColumns)
{
    const CppSQLite3Query query = all();
    EXPECT_EQ(query.numFields(), 4);
    EXPECT_EQ(query.fieldIndex(u"s"), 2);
    EXPECT_EQ(query.fieldName(2), u"s"_s);
    EXPECT_EQ(query.fieldDeclType(2), u"NVARCHAR(50)"_s);
    EXPECT_EQ(query.fieldDataType(0), 1);
    EXPECT_EQ(query.fieldDataType(1), 2);
    EXPECT_EQ(query.fieldDataType(2), 3);
    EXPECT_EQ(query.fieldDataType(3), 4);
    EXPECT_EQ(database.execQuery(u"select 1+1"_s).fieldDeclType(0), QString());
}

TEST_F(SqliteQueryTest, readsValuesByIndexAndByName)
{
    const CppSQLite3Query query = all();
    EXPECT_EQ(query.getInt64Field(0), 5000000000);
    EXPECT_EQ(query.getInt64Field(u"n"), 5000000000);
    EXPECT_EQ(query.fieldValue(0), u"5000000000"_s);
    EXPECT_EQ(query.getFloatField(u"f"), 1.5);
    EXPECT_EQ(query.getStringField(u"s"), u"text"_s);
    EXPECT_EQ(query.fieldValue(u"s"), u"text"_s);
    EXPECT_EQ(query.getBlobField(3), QByteArray("\x00\xff\x41", 3));
    EXPECT_FALSE(query.fieldIsNull(u"n"));
}

TEST_F(SqliteQueryTest, givesTheCallersValueForNull)
{
    CppSQLite3Query query = all();
    query.nextRow();
    EXPECT_TRUE(query.fieldIsNull(0));
    EXPECT_EQ(query.getIntField(0), 0);
    EXPECT_EQ(query.getIntField(u"n", -7), -7);
    EXPECT_EQ(query.getInt64Field(u"n", -8), -8);
    EXPECT_EQ(query.getFloatField(u"f", 2.5), 2.5);
    EXPECT_EQ(query.getStringField(u"s", u"none"_s), u"none"_s);
    EXPECT_TRUE(query.fieldValue(u"s").isNull());
    EXPECT_TRUE(query.getBlobField(u"b").isEmpty());
}

TEST_F(SqliteQueryTest, keepsANulInAText)
{
    const CppSQLite3Query query = database.execQuery(u"select 'a'||char(0)||'b'"_s);
    EXPECT_EQ(query.fieldValue(0), QString::fromUtf16(u"a\0b", 3));
}

TEST_F(SqliteQueryTest, refusesAnIndexOutsideTheColumns)
{
    const QString expected = u"CPPSQLITE_ERROR[1000]: Invalid field index requested"_s;
    const CppSQLite3Query query = all();
    for (const int index : {-1, 4, 1000}) {
        EXPECT_EQ(messageOf([&] { return query.fieldValue(index); }), expected);
        EXPECT_EQ(messageOf([&] { return query.fieldName(index); }), expected);
        EXPECT_EQ(messageOf([&] { return query.fieldDeclType(index); }), expected);
        EXPECT_EQ(messageOf([&] { return query.fieldDataType(index); }), expected);
        EXPECT_EQ(messageOf([&] { return query.getIntField(index); }), expected);
        EXPECT_EQ(messageOf([&] { return query.getBlobField(index); }), expected);
    }
}

TEST_F(SqliteQueryTest, comparesNamesExactly)
{
    const QString expected = u"CPPSQLITE_ERROR[1000]: Invalid field name requested"_s;
    const CppSQLite3Query query = all();
    EXPECT_EQ(messageOf([&] { return query.fieldIndex(u"S"); }), expected);
    EXPECT_EQ(messageOf([&] { return query.fieldValue(u"missing"); }), expected);
    EXPECT_EQ(messageOf([&] { return query.getIntField(u""); }), expected);
}

TEST_F(SqliteQueryTest, refusesAccessWithoutAStatement)
{
    CppSQLite3Query query = all();
    query.finalize();
    query.finalize();
    EXPECT_EQ(messageOf([&] { return query.eof(); }), kNoStatement);
    EXPECT_EQ(messageOf([&] { return query.numFields(); }), kNoStatement);
    EXPECT_EQ(messageOf([&] { return query.fieldValue(0); }), kNoStatement);
    EXPECT_EQ(messageOf([&] { return query.fieldIndex(u"n"); }), kNoStatement);
    EXPECT_EQ(messageOf([&] { return query.fieldName(0); }), kNoStatement);
    EXPECT_EQ(messageOf([&] {
                  query.nextRow();
                  return 0;
              }),
              kNoStatement);
    EXPECT_EQ(messageOf([] { return CppSQLite3Query().eof(); }), kNoStatement);
}

TEST_F(SqliteQueryTest, handsItsStatementOverWhenItIsCopied)
{
    CppSQLite3Query source = all();
    CppSQLite3Query copy(source);
    EXPECT_EQ(copy.getStringField(u"s"), u"text"_s);
    EXPECT_EQ(messageOf([&] { return source.eof(); }), kNoStatement);
    CppSQLite3Query assigned;
    assigned = copy;
    EXPECT_EQ(messageOf([&] { return copy.eof(); }), kNoStatement);
    assigned.nextRow();
    EXPECT_FALSE(assigned.eof());
    assigned = all();
    EXPECT_EQ(assigned.getStringField(u"s"), u"text"_s);
}

TEST_F(SqliteQueryTest, throwsWhenALaterRowFails)
{
    CppSQLite3Query query =
        database.execQuery(u"select abs(column1) from (values(1),(-9223372036854775808))"_s);
    EXPECT_EQ(messageOf([&] {
                  query.nextRow();
                  return 0;
              }),
              u"SQLITE_ERROR[1]: integer overflow"_s);
    EXPECT_EQ(messageOf([&] { return query.eof(); }), kNoStatement);
}

class SqliteStatementTest : public SqliteQueryTest {};

TEST_F(SqliteStatementTest, runsManyTimesWithOtherValues)
{
    CppSQLite3Statement insert = database.compileStatement(u"INSERT INTO t VALUES(?,?,?,?)"_s);
    for (int number = 0; number < 3; ++number) {
        insert.bind(1, number);
        insert.bind(2, 0.5);
        insert.bind(3, QStringView(u"it's"));
        insert.bind(4, QByteArrayView("\0x", 2));
        EXPECT_EQ(insert.execDML(), 1);
    }
    EXPECT_EQ(database.execScalar(u"select count(*) from t where s='it''s' and b=x'0078'"_s), 3);
}

TEST_F(SqliteStatementTest, bindsEmptyTextsAndBlobsAsThemselvesAndNullAsNull)
{
    CppSQLite3Statement select =
        database.compileStatement(u"select typeof(?1)||typeof(?2)||typeof(?3)"_s);
    select.bind(1, QStringView());
    select.bind(2, QByteArrayView());
    select.bindNull(3);
    EXPECT_EQ(select.execQuery().getStringField(0), u"textblobnull"_s);
}

TEST_F(SqliteStatementTest, givesRowsThatItKeeps)
{
    CppSQLite3Statement select = database.compileStatement(u"select n from t where s=?"_s);
    select.bind(1, QStringView(u"text"));
    {
        const CppSQLite3Query rows = select.execQuery();
        EXPECT_EQ(rows.getInt64Field(0), 5000000000);
    }
    select.reset();
    select.bind(1, QStringView(u"other"));
    EXPECT_TRUE(select.execQuery().eof());
}

TEST_F(SqliteStatementTest, namesTheKindOfAValueThatCannotBeBound)
{
    CppSQLite3Statement select = database.compileStatement(u"select ?"_s);
    const auto message = [](const QString &kind) {
        return u"CPPSQLITE_ERROR[1000]: Error binding %1 param"_s.arg(kind);
    };
    EXPECT_EQ(messageOf([&] {
                  select.bind(2, QStringView(u"x"));
                  return 0;
              }),
              message(u"string"_s));
    EXPECT_EQ(messageOf([&] {
                  select.bind(0, 1);
                  return 0;
              }),
              message(u"int"_s));
    EXPECT_EQ(messageOf([&] {
                  select.bind(-1, 1.0);
                  return 0;
              }),
              message(u"double"_s));
    EXPECT_EQ(messageOf([&] {
                  select.bind(2, QByteArrayView("x"));
                  return 0;
              }),
              message(u"blob"_s));
    EXPECT_EQ(messageOf([&] {
                  select.bindNull(2);
                  return 0;
              }),
              message(u"NULL"_s));
}

TEST_F(SqliteStatementTest, throwsTheTrueCodeOfAFailedRun)
{
    database.execDML(u"CREATE UNIQUE INDEX i ON t(n)"_s);
    CppSQLite3Statement insert = database.compileStatement(u"INSERT INTO t(n) VALUES(?)"_s);
    insert.bind(1, 1);
    EXPECT_EQ(insert.execDML(), 1);
    EXPECT_EQ(messageOf([&] { return insert.execDML(); }),
              u"SQLITE_CONSTRAINT[19]: UNIQUE constraint failed: t.n"_s);
    insert.bind(1, 2);
    EXPECT_EQ(insert.execDML(), 1);
}

TEST_F(SqliteStatementTest, needsAStatementAndAConnection)
{
    CppSQLite3Statement none;
    EXPECT_EQ(messageOf([&] { return none.execDML(); }),
              u"CPPSQLITE_ERROR[1000]: Database not open"_s);
    EXPECT_EQ(messageOf([&] {
                  none.bind(1, 1);
                  return 0;
              }),
              kNoStatement);
    CppSQLite3Statement finalized = database.compileStatement(u"select 1"_s);
    finalized.finalize();
    EXPECT_EQ(messageOf([&] { return finalized.execDML(); }), kNoStatement);
    EXPECT_EQ(messageOf([&] { return finalized.execQuery(); }), kNoStatement);
    EXPECT_EQ(messageOf([&] {
                  finalized.reset();
                  return 0;
              }),
              kNoStatement);
    EXPECT_EQ(messageOf([&] {
                  finalized.bindNull(1);
                  return 0;
              }),
              kNoStatement);
}

TEST_F(SqliteStatementTest, movesWithItsStatement)
{
    CppSQLite3Statement source = database.compileStatement(u"select 8"_s);
    CppSQLite3Statement target(std::move(source));
    EXPECT_EQ(target.execQuery().getIntField(0), 8);
    target.reset();
    CppSQLite3Statement assigned;
    assigned = std::move(target);
    EXPECT_EQ(assigned.execQuery().getIntField(0), 8);
}

} // namespace tollivar::test
