#include "tests/tasks/store_fixture.h"

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::StoredTask;
using tasks::TaskInfo;
using tasks::TextColumn;

struct TitleRow {
    const char *name;
    QString title;
    QString stored;
};

void PrintTo(const TitleRow &row, std::ostream *out)
{
    *out << row.name;
}

/// Titles come from web pages: whatever they hold, they are values and nothing else.
class HostileTitle : public testing::TestWithParam<TitleRow> {};

TEST_P(HostileTitle, isStoredAndTheStatementStaysWhole)
{
    TaskStore store;
    auto database = store.open();
    ASSERT_TRUE(database);
    TaskInfo task = asStored(fullTask());
    task.strOutputName = GetParam().title;
    task.m_ConvOpts.m_csOutputName = GetParam().title;
    task.strPlayPath = GetParam().title;
    const tasks::RowId row = database->InsertTask(task);
    EXPECT_GT(row, 0);
    database->UpdateText(row, TextColumn::Cookies, GetParam().title);
    database.reset();

    task.strOutputName = GetParam().stored;
    task.m_ConvOpts.m_csOutputName = GetParam().stored;
    task.strPlayPath = GetParam().stored;
    task.strCookies = GetParam().stored;
    database = store.open();
    ASSERT_TRUE(database);
    const std::vector<StoredTask> tasks = TaskStore::load(*database);
    ASSERT_EQ(tasks.size(), 1U);
    EXPECT_EQ(tasks.front().task, task);
    EXPECT_EQ(store.messages(), QStringList());
}

TitleRow unchanged(const char *name, const QString &title)
{
    return {name, title, title};
}

INSTANTIATE_TEST_SUITE_P(
    TaskDatabase, HostileTitle,
    testing::Values(unchanged("empty", {}), unchanged("quote", u"it's"_s),
                    unchanged("onlyQuotes", QString(1000, u'\'')),
                    unchanged("secondStatement", u"'); DROP TABLE tasks2; --"_s),
                    unchanged("otherRow", u"x' WHERE ROWID = '1' OR '1'='1"_s),
                    unchanged("comment", u"/* -- */"_s), unchanged("backslash", u"\\'\\"_s),
                    unchanged("placeholders", u"%s %d %n %1 %2 ? ?1 :a @b $c"_s),
                    unchanged("lineBreaks", u"a\r\nb\tc\x1b[2J"_s),
                    unchanged("outsideLatin", u"Съ\u202e\ufeff\u0301 \U0001F600"_s),
                    unchanged("numberLike", u"007"_s),
                    unchanged("oneMillionCharacters", QString(1'000'000, u'x')),
                    unchanged("oneMillionQuotes", QString(1'000'000, u'\'')),
                    TitleRow{"nul", QString::fromUtf16(u"a\0b", 3), u"ab"_s},
                    TitleRow{"notACharacter", u"\uFFFE\uFFFF"_s, u"\uFFFD\uFFFD"_s},
                    TitleRow{"onlyNul", QString(3, QChar(0)), {}},
                    TitleRow{"highSurrogateAtTheEnd", u"a"_s + QChar(0xD800), u"a\uFFFD"_s},
                    TitleRow{"lowSurrogateFirst", QChar(0xDC00) + u"a"_s, u"\uFFFDa"_s},
                    TitleRow{"highSurrogateBeforeAQuote",
                             QString(QChar(0xDBFF)) + u"', (select 1), '"_s,
                             u"\uFFFD', (select 1), '"_s}),
    [](const testing::TestParamInfo<TitleRow> &row) { return row.param.name; });

TEST(HostileRows, ofAnotherProgramAreReadHarmlessly)
{
    TaskStore store;
    auto database = store.open();
    ASSERT_TRUE(database);
    static_cast<void>(database->InsertTask(fullTask()));
    database.reset();
    store.runSql(u"UPDATE tasks2 SET dwSize='99999999999999', dwDownloadSize='lots', "
                 "bAutoRename=x'ff00', bFileCreated=NULL, nDownloadMode=1e300, nProtocol='', "
                 "nCompletedStatus='-5x', strOriURL=x'00d8', strOutputName=NULL, "
                 "strFileType=12.5"_s);
    database = store.open();
    ASSERT_TRUE(database);
    const std::vector<StoredTask> tasks = TaskStore::load(*database);
    ASSERT_EQ(tasks.size(), 1U);
    const TaskInfo &task = tasks.front().task;
    EXPECT_EQ(task.dwSize, tasks::kUnknownSize);
    EXPECT_EQ(task.dwDownloadSize, 0U);
    EXPECT_EQ(task.bFileCreated, 0);
    EXPECT_EQ(task.nCompletedStatus, -5);
    EXPECT_EQ(task.nProtocol, 0);
    EXPECT_EQ(task.strOutputName, QString());
    EXPECT_EQ(task.strFileType, u"12.5"_s);
    EXPECT_EQ(store.messages(), QStringList());
}

} // namespace tollivar::test
