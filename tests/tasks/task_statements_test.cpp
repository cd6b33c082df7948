#include "tasks/internal/task_statements.h"
#include "tasks/task_columns.h"

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::isTextColumn;
using tasks::kTaskColumns;
using tasks::quoted;
using tasks::TaskInfo;

/// The n-th column (from 1) holds n, texts with a "t" in front.
TaskInfo numberedTask()
{
    TaskInfo task;
    int number = 0;
    for (const tasks::TaskColumn &column : kTaskColumns) {
        ++number;
        tasks::setColumnText(task, column, (isTextColumn(column) ? u"t%1"_s : u"%1"_s).arg(number));
    }
    return task;
}

TEST(TaskStatements, createTheTableByTheVeryTextOfEarlierReleases)
{
    EXPECT_EQ(tasks::createStatement(),
              u"CREATE TABLE tasks2(strOriURL NTEXT , strDownloadUrl NTEXT , strOutputFolder"
              " NVARCHAR(32767) ,strOutputName NVARCHAR(32767) ,\t\t\t\t\t\t   strFileType "
              "NVARCHAR(256) ,strCookies NTEXT ,strAgent NTEXT ,strReferer NTEXT ,dwSize IN"
              "TEGER, dwDownloadSize INTEGER,\t\t\t\t\t\t   bAutoRename BOOL, bFileCreated "
              "BOOL,\t nDownloadMode INTEGER,\t\t\t\t\t\t   csAudioBitRateOpts NVARCHAR(50)"
              ",m_csAudioChannelOpts NVARCHAR(10),m_csAudioCodecOpts NVARCHAR(100),m_csAudi"
              "oSampleRateOpts NVARCHAR(50),m_csConvParam NVARCHAR(100),\t\t\t\t\t\t   m_cs"
              "OutputName NVARCHAR(32767),m_csProfileName NVARCHAR(100),m_csType NVARCHAR(1"
              "00),m_csVideoBitRateOpts NVARCHAR(50),m_csVideoCodecOpts NVARCHAR(100),\t\t\t"
              "\t\t\t   m_csVideoFrameRateOpts NVARCHAR(100),m_csVideoSizeOpts NVARCHAR(100"
              "),\t\t\t\t\t\t   nProtocol INTEGER,strApp NTEXT, strFlashVer NTEXT, strSwfUr"
              "l NTEXT, strTcUrl NTEXT, strPageUrl NTEXT, strPlayPath NTEXT,nCompletedStatu"
              "s INTEGER)"_s);
}

TEST(TaskStatements, insertAllColumnsInOrderByTheVeryTextOfEarlierReleases)
{
    EXPECT_EQ(tasks::insertStatement(numberedTask()),
              u"INSERT INTO tasks2 VALUES('t1','t2','t3','t4','t5','t6','t7','t8','9','10','"
              "11','12','13'\t\t\t\t\t\t ,'t14','t15','t16','t17','t18','t19','t20','t21','"
              "t22','t23','t24','t25' ,'26','t27','t28','t29','t30','t31','t32','33')"_s);
}

TEST(TaskStatements, insertDefaultsWithAnUnknownSizeAsMinusOne)
{
    const QString statement = tasks::insertStatement(TaskInfo());
    EXPECT_TRUE(statement.contains(u"'','','','','.flv','','','','-1','0','1','0','0'\t"))
        << statement.toStdString();
    EXPECT_TRUE(statement.endsWith(u" ,'1','','','','','','','0')")) << statement.toStdString();
}

TEST(TaskStatements, updateOneColumn)
{
    EXPECT_EQ(tasks::updateStatement(12, u"strAgent", u"it's"),
              u"UPDATE tasks2 SET strAgent = 'it''s' WHERE ROWID = '12'"_s);
    EXPECT_EQ(tasks::updateStatement(-9223372036854775807, u"dwSize", u"-1"),
              u"UPDATE tasks2 SET dwSize = '-1' WHERE ROWID = '-9223372036854775807'"_s);
}

TEST(TaskStatements, deleteOneRow)
{
    EXPECT_EQ(tasks::deleteStatement(12), u"DELETE FROM tasks2 WHERE ROWID = '12'"_s);
}

TEST(TaskStatements, leaveTheMarksOfOtherFormatsAlone)
{
    TaskInfo task;
    task.strOriURL = u"%1%2%s%d%n"_s;
    task.strOutputName = u"%1"_s;
    EXPECT_TRUE(tasks::insertStatement(task).contains(u"('%1%2%s%d%n','','','%1',"));
}

struct QuotedRow {
    const char *name;
    QString value;
    QString expected;
};

void PrintTo(const QuotedRow &row, std::ostream *out)
{
    *out << row.name;
}

class QuotedTable : public testing::TestWithParam<QuotedRow> {};

TEST_P(QuotedTable, givesALiteral)
{
    EXPECT_EQ(quoted(GetParam().value), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Quoted, QuotedTable,
    testing::Values(
        QuotedRow{"empty", {}, u"''"_s}, QuotedRow{"plain", u"name"_s, u"'name'"_s},
        QuotedRow{"quote", u"it's"_s, u"'it''s'"_s},
        QuotedRow{"onlyQuotes", u"'''"_s, u"''''''''"_s},
        QuotedRow{"doubleQuotesStay", u"\"a\""_s, u"'\"a\"'"_s},
        QuotedRow{"pairOfSurrogatesStays", u"\U0001F600"_s, u"'\U0001F600'"_s},
        QuotedRow{"highSurrogateAtTheEnd", QString(QChar(0xD800)), u"'\uFFFD'"_s},
        QuotedRow{"highSurrogateBeforeAQuote", QString(QChar(0xDBFF)) + u'\'', u"'\uFFFD'''"_s},
        QuotedRow{"lowSurrogateAlone", QString(QChar(0xDC00)) + u'a', u"'\uFFFDa'"_s},
        QuotedRow{"twoHighSurrogates", QString(QChar(0xD800)) + QChar(0xD83D) + QChar(0xDE00),
                  u"'\uFFFD\U0001F600'"_s},
        QuotedRow{"surrogatesPartedByANul", QString(QChar(0xD83D)) + QChar(0) + QChar(0xDE00),
                  u"'\uFFFD\uFFFD'"_s},
        QuotedRow{"nulIsLeftOut", QString::fromUtf16(u"a\0b", 3), u"'ab'"_s}),
    [](const testing::TestParamInfo<QuotedRow> &row) { return row.param.name; });

} // namespace tollivar::test
