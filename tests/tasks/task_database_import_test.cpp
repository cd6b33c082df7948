#include "tasks/internal/task_statements.h"
#include "tests/tasks/store_child.h"
#include "tests/tasks/store_fixture.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <random>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::StoredTask;
using tasks::TaskInfo;

namespace {

/// The two lines of a task with an address alone.
QByteArray oldTaskLines(int number, const QByteArray &address)
{
    const QByteArray key = QByteArray::number(number);
    return key + "_LEN=" + QByteArray::number(address.size()) + QByteArray(" 0").repeated(7) +
           " -1 0 1 0 0" + QByteArray(" 0").repeated(15) + "\r\n" + key + "_STRING=" + address +
           "\r\n";
}

QByteArray oldList(int count, const QByteArray &lines)
{
    return "[GENERAL]\r\nTaskCount=" + QByteArray::number(count) + "\r\n[TASKINFO]\r\n" + lines;
}

QStringList addressesIn(tasks::TaskDatabase &database)
{
    QStringList addresses;
    for (const StoredTask &stored : TaskStore::load(database)) {
        addresses.append(stored.task.strOriURL);
    }
    return addresses;
}

/// The create statement of the older table: the newer one's without its last eight columns.
QString olderCreateStatement()
{
    QString sql = tasks::createStatement();
    sql.replace(u"tasks2"_s, u"tasks"_s);
    return sql.first(sql.indexOf(u",\t\t\t\t\t\t   nProtocol"_s)) + u')';
}

QString olderInsert(const QString &address, int size, int downloaded, int created)
{
    return u"INSERT INTO tasks VALUES('%1','du','/f/','n','.avi','c','a','r','%2','%3','0','%4',"
           "'26','ab','ac','ad','as','cp','on','pn','ty','vb','vc','vf','vs')"_s.arg(address)
               .arg(size)
               .arg(downloaded)
               .arg(created);
}

} // namespace

TEST(FirstStart, carriesTheOldListOver)
{
    TaskStore store;
    const QByteArray list =
        oldList(2, oldTaskLines(0, "it's 'quoted'") + oldTaskLines(1, "second"));
    store.sandbox().write(u"dtasks.ini"_s, list);
    const auto database = store.open();
    ASSERT_TRUE(database);
    EXPECT_EQ(addressesIn(*database), (QStringList{u"it's 'quoted'"_s, u"second"_s}));
    EXPECT_EQ(TaskStore::load(*database).front().task.dwSize, tasks::kUnknownSize);
    EXPECT_EQ(store.sandbox().read(u"dtasks.ini"_s), list);
    EXPECT_EQ(store.messages(), QStringList());
}

TEST(FirstStart, readsTheOldListInTheEncodingOfItsTime)
{
    TaskStore store;
    const QString list =
        QString::fromUtf8(oldList(1, "0_LEN=3 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0"
                                     "\r\n0_STRING=\xd0\xb6\xf0\x9f\x98\x80\r\n"));
    QByteArray bytes("\xff\xfe", 2);
    bytes.append(reinterpret_cast<const char *>(list.utf16()), list.size() * 2);
    store.sandbox().write(u"dtasks.ini"_s, bytes);
    const auto database = store.open();
    ASSERT_TRUE(database);
    EXPECT_EQ(addressesIn(*database), QStringList{u"ж\U0001F600"_s});
}

TEST(FirstStart, leavesATaskWithABadLineOut)
{
    TaskStore store;
    store.sandbox().write(
        u"dtasks.ini"_s, oldList(2, "0_LEN=bad\r\n0_STRING=first\r\n" + oldTaskLines(1, "second")));
    const auto database = store.open();
    ASSERT_TRUE(database);
    EXPECT_EQ(addressesIn(*database), QStringList{u"second"_s});
    EXPECT_EQ(store.messages(), QStringList());
}

TEST(FirstStart, beginsEmptyWithoutAnOldList)
{
    TaskStore store;
    const auto database = store.open();
    ASSERT_TRUE(database);
    EXPECT_TRUE(TaskStore::load(*database).empty());
    EXPECT_FALSE(QFileInfo::exists(store.oldListPath()));
}

TEST(FirstStart, takesAnythingForAnOldList)
{
    for (const QByteArray &content :
         {QByteArray(), QByteArray("\xff\xfe"), QByteArray("\xff\xfe\x5b"),
          QByteArray(100'000, '\0'), QByteArray("[TASKINFO"), QByteArray("=\n=\n"),
          QByteArray("[GENERAL]\nTaskCount=-1"), QByteArray("[GENERAL]\nTaskCount=99999999999"),
          QByteArray(50'000, '[')}) {
        TaskStore store;
        store.sandbox().write(u"dtasks.ini"_s, content);
        const auto database = store.open();
        ASSERT_TRUE(database);
        EXPECT_TRUE(TaskStore::load(*database).empty());
        EXPECT_EQ(store.messages(), QStringList());
    }
}

TEST(SecondStart, doesNotLookAtTheOldListAgain)
{
    TaskStore store;
    store.sandbox().write(u"dtasks.ini"_s, oldList(1, oldTaskLines(0, "first")));
    auto database = store.open();
    ASSERT_TRUE(database);
    database->DeleteTask(TaskStore::load(*database).front().row);
    database.reset();
    database = store.open();
    ASSERT_TRUE(database);
    EXPECT_TRUE(TaskStore::load(*database).empty());
}

TEST(SecondStart, carriesTheOldListOverWhenTheFirstWasCutShort)
{
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    constexpr int count = 400;
    QByteArray lines;
    for (int number = 0; number < count; ++number) {
        lines += oldTaskLines(number, "address " + QByteArray::number(number));
    }
    for (int round = 0; round < 20; ++round) {
        TaskStore store;
        store.sandbox().write(u"dtasks.ini"_s, oldList(count, lines));
        StoreChild child({u"import"_s, store.sandbox().path()});
        EXPECT_EQ(child.readLine(), u"begin"_s);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 30'000));
        child.kill();
        child.finish();
        const auto database = store.open();
        ASSERT_TRUE(database);
        EXPECT_EQ(addressesIn(*database).size(), count) << "round " << round;
    }
}

class OlderTable : public testing::Test {
protected:
    OlderTable()
    {
        store.runSql(olderCreateStatement());
        store.runSql(olderInsert(u"http://it''s/done"_s, 100, 100, 1));
        store.runSql(olderInsert(u"unknown"_s, -1, 100, 1));
        store.runSql(olderInsert(u"part"_s, 100, 99, 1));
        store.runSql(olderInsert(u"no file"_s, 100, 100, 0));
    }

    TaskStore store;
};

TEST_F(OlderTable, isMovedWholeAndDropped)
{
    const auto database = store.open();
    ASSERT_TRUE(database);
    const std::vector<StoredTask> tasks = TaskStore::load(*database);
    ASSERT_EQ(tasks.size(), 4U);
    const TaskInfo &task = tasks.front().task;
    EXPECT_EQ(task.strOriURL, u"http://it's/done"_s);
    EXPECT_EQ(task.outputPath(), u"/f/n.avi"_s);
    EXPECT_EQ(task.m_ConvOpts.m_csAudioBitRateOpts, u"ab"_s);
    EXPECT_EQ(task.m_ConvOpts.m_csVideoSizeOpts, u"vs"_s);
    EXPECT_EQ(task.nModeLow, 6);
    EXPECT_EQ(task.nModeHigh, 2);
    EXPECT_EQ(task.nProtocol, 1);
    EXPECT_EQ(task.strPlayPath, QString());
    EXPECT_EQ(store.scalar(u"select count(*) from sqlite_master where name='tasks'"_s), u"0"_s);
    EXPECT_EQ(store.messages(), QStringList());
}

TEST_F(OlderTable, marksTheTasksWhoseFileIsThereWholeAsCompleted)
{
    const auto database = store.open();
    ASSERT_TRUE(database);
    std::vector<int> statuses;
    for (const StoredTask &stored : TaskStore::load(*database)) {
        statuses.push_back(stored.task.nCompletedStatus);
    }
    EXPECT_EQ(statuses, (std::vector<int>{1, 0, 0, 0}));
}

TEST_F(OlderTable, joinsTheRowsOfTheNewerOne)
{
    store.runSql(tasks::createStatement());
    store.runSql(tasks::insertStatement(fullTask()));
    const auto database = store.open();
    ASSERT_TRUE(database);
    EXPECT_EQ(TaskStore::load(*database).size(), 5U);
}

TEST_F(OlderTable, isMovedWhenItAppearsWhileTheDatabaseIsOpen)
{
    const auto database = store.open();
    ASSERT_TRUE(database);
    store.runSql(olderCreateStatement());
    store.runSql(olderInsert(u"late"_s, 1, 0, 0));
    database->EnsureSchema();
    EXPECT_EQ(addressesIn(*database).last(), u"late"_s);
    EXPECT_EQ(store.messages(), QStringList());
}

TEST(ForeignTable, ofTheOlderNameIsToldAndLeftAlone)
{
    TaskStore store;
    store.runSql(u"CREATE TABLE tasks(title NTEXT)"_s);
    store.runSql(u"INSERT INTO tasks VALUES('mine')"_s);
    const auto database = store.open();
    ASSERT_TRUE(database);
    EXPECT_EQ(store.messages(),
              QStringList{u"CPPSQLITE_ERROR[1000]: Invalid field name requested"_s});
    EXPECT_EQ(store.scalar(u"select title from tasks"_s), u"mine"_s);
    EXPECT_GT(database->InsertTask(fullTask()), 0);
}

} // namespace tollivar::test
