#include "tasks/task_database.h"
#include "tests/tasks/store_fixture.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::Durability;
using tasks::NumberColumn;
using tasks::RowId;
using tasks::StoredTask;
using tasks::TaskInfo;
using tasks::TextColumn;

class TaskDatabaseTest : public testing::Test {
protected:
    /// Closes and opens the database, as a new start does.
    void reopen()
    {
        database.reset();
        database = store.open();
        ASSERT_TRUE(database);
    }

    [[nodiscard]] TaskInfo onlyTask()
    {
        const std::vector<StoredTask> tasks = TaskStore::load(*database);
        EXPECT_EQ(tasks.size(), 1U);
        return tasks.empty() ? TaskInfo() : tasks.front().task;
    }

    TaskStore store;
    std::unique_ptr<tasks::TaskDatabase> database = store.open();
};

TEST_F(TaskDatabaseTest, givesEveryStoredFieldBack)
{
    const RowId row = database->InsertTask(fullTask());
    EXPECT_GT(row, 0);
    reopen();
    const std::vector<StoredTask> tasks = TaskStore::load(*database);
    ASSERT_EQ(tasks.size(), 1U);
    EXPECT_EQ(tasks.front().row, row);
    EXPECT_EQ(tasks.front().task, asStored(fullTask()));
    EXPECT_EQ(store.messages(), QStringList());
}

TEST_F(TaskDatabaseTest, handsTasksOverInTheOrderOfTheirInsertion)
{
    std::vector<RowId> inserted;
    for (int number = 0; number < 20; ++number) {
        inserted.push_back(database->InsertTask(fullTask()));
    }
    std::vector<RowId> loaded;
    database->LoadTasks([&loaded](RowId row, TaskInfo &&) { loaded.push_back(row); });
    EXPECT_EQ(loaded, inserted);
    EXPECT_TRUE(std::is_sorted(loaded.begin(), loaded.end()));
}

TEST_F(TaskDatabaseTest, keepsAnUnknownSizeAsMinusOne)
{
    static_cast<void>(database->InsertTask(TaskInfo()));
    EXPECT_EQ(onlyTask().dwSize, tasks::kUnknownSize);
    EXPECT_EQ(store.scalar(u"select dwSize from tasks2"_s), u"-1"_s);
}

TEST_F(TaskDatabaseTest, keepsAPackedModeOfTwentySix)
{
    static_cast<void>(database->InsertTask(fullTask()));
    EXPECT_EQ(store.scalar(u"select nDownloadMode from tasks2"_s), u"26"_s);
    EXPECT_EQ(onlyTask().nModeLow, 6);
    EXPECT_EQ(onlyTask().nModeHigh, 2);
}

TEST_F(TaskDatabaseTest, storesNumbersAsIntegers)
{
    static_cast<void>(database->InsertTask(fullTask()));
    EXPECT_EQ(store.scalar(u"select typeof(dwSize)||typeof(bAutoRename)||typeof(nCompletedStatus) "
                           "from tasks2"_s),
              u"integerintegerinteger"_s);
}

TEST_F(TaskDatabaseTest, updatesOneTextColumnAlone)
{
    struct Case {
        TextColumn column;
        QString TaskInfo::*field;
    };
    const RowId row = database->InsertTask(fullTask());
    TaskInfo expected = asStored(fullTask());
    for (const Case &updated : {Case{TextColumn::DownloadUrl, &TaskInfo::strDownloadUrl},
                                Case{TextColumn::FileType, &TaskInfo::strFileType},
                                Case{TextColumn::Cookies, &TaskInfo::strCookies},
                                Case{TextColumn::Agent, &TaskInfo::strAgent},
                                Case{TextColumn::Referer, &TaskInfo::strReferer},
                                Case{TextColumn::OutputName, &TaskInfo::strOutputName}}) {
        expected.*updated.field += u" it's new"_s;
        database->UpdateText(row, updated.column, expected.*updated.field);
        EXPECT_EQ(onlyTask(), expected);
    }
    EXPECT_EQ(store.messages(), QStringList());
}

TEST_F(TaskDatabaseTest, updatesOneNumberColumnAlone)
{
    const RowId row = database->InsertTask(fullTask());
    TaskInfo expected = asStored(fullTask());
    const auto update = [&](NumberColumn column, std::int32_t value) {
        database->UpdateInt(row, column, value);
    };
    update(NumberColumn::Size, 77);
    expected.dwSize = 77;
    EXPECT_EQ(onlyTask(), expected);
    update(NumberColumn::DownloadSize, 55);
    expected.dwDownloadSize = 55;
    EXPECT_EQ(onlyTask(), expected);
    update(NumberColumn::FileCreated, 0);
    expected.bFileCreated = 0;
    EXPECT_EQ(onlyTask(), expected);
    update(NumberColumn::DownloadMode, 31);
    expected.nModeLow = 1;
    expected.nModeHigh = 3;
    EXPECT_EQ(onlyTask(), expected);
    update(NumberColumn::CompletedStatus, 0);
    expected.nCompletedStatus = 0;
    EXPECT_EQ(onlyTask(), expected);
    EXPECT_EQ(store.messages(), QStringList());
}

TEST_F(TaskDatabaseTest, givesSizesOfTwoToFourGibibytesBackFromTheirSignedForm)
{
    const RowId row = database->InsertTask(fullTask());
    for (const std::uint32_t size : {0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
        database->UpdateInt(row, NumberColumn::Size, static_cast<std::int32_t>(size));
        EXPECT_EQ(onlyTask().dwSize, size);
    }
}

TEST_F(TaskDatabaseTest, keepsProgressOverTheEndOfTheProcessToo)
{
    const RowId row = database->InsertTask(fullTask());
    database->UpdateInt(row, NumberColumn::DownloadSize, 100, Durability::Progress);
    database->UpdateInt(row, NumberColumn::DownloadSize, 200, Durability::Progress);
    database->UpdateText(row, TextColumn::OutputName, u"name"_s);
    reopen();
    EXPECT_EQ(onlyTask().dwDownloadSize, 200U);
    EXPECT_EQ(onlyTask().strOutputName, u"name"_s);
}

TEST_F(TaskDatabaseTest, updatesOnlyTheRowThatIsMeant)
{
    const RowId first = database->InsertTask(fullTask());
    const RowId second = database->InsertTask(fullTask());
    database->UpdateInt(second, NumberColumn::Size, 1);
    const std::vector<StoredTask> tasks = TaskStore::load(*database);
    ASSERT_EQ(tasks.size(), 2U);
    EXPECT_EQ(tasks[0].row, first);
    EXPECT_EQ(tasks[0].task.dwSize, fullTask().dwSize);
    EXPECT_EQ(tasks[1].task.dwSize, 1U);
}

TEST_F(TaskDatabaseTest, tellsTheDatabasesMessageWhenACodeNamesNoColumn)
{
    const RowId row = database->InsertTask(fullTask());
    database->UpdateText(row, static_cast<TextColumn>(2), u"x"_s);
    ASSERT_EQ(store.messages().size(), 1);
    EXPECT_TRUE(store.messages().front().startsWith(u"SQLITE_ERROR[1]: "));
    database->UpdateInt(row, static_cast<NumberColumn>(11), 5);
    EXPECT_EQ(store.messages().size(), 2);
    EXPECT_EQ(onlyTask(), asStored(fullTask()));
}

TEST_F(TaskDatabaseTest, deletesARowAndLeavesTheOthers)
{
    const RowId first = database->InsertTask(fullTask());
    const RowId second = database->InsertTask(fullTask());
    database->DeleteTask(first);
    const std::vector<StoredTask> tasks = TaskStore::load(*database);
    ASSERT_EQ(tasks.size(), 1U);
    EXPECT_EQ(tasks.front().row, second);
}

TEST_F(TaskDatabaseTest, deletesARowThatDoesNotExistSilently)
{
    database->DeleteTask(4711);
    EXPECT_EQ(store.messages(), QStringList());
}

TEST_F(TaskDatabaseTest, makesTheTableAnewWhenAnotherProgramDroppedIt)
{
    store.runSql(u"DROP TABLE tasks2"_s);
    database->DeleteTask(1);
    EXPECT_EQ(store.messages(), QStringList());
    EXPECT_GT(database->InsertTask(fullTask()), 0);
}

TEST_F(TaskDatabaseTest, writesATransactionWhole)
{
    database->inTransaction([this] {
        for (int number = 0; number < 1000; ++number) {
            static_cast<void>(database->InsertTask(fullTask()));
        }
    });
    EXPECT_EQ(TaskStore::load(*database).size(), 1000U);
    EXPECT_EQ(store.scalar(u"select count(*) from tasks2"_s), u"1000"_s);
}

TEST_F(TaskDatabaseTest, showsOthersNothingOfATransactionThatIsUnderWay)
{
    QString seenInside;
    database->inTransaction([&] {
        static_cast<void>(database->InsertTask(fullTask()));
        database->inTransaction([&] { static_cast<void>(database->InsertTask(fullTask())); });
        database->UpdateInt(1, NumberColumn::Size, 5, Durability::Progress);
        seenInside = store.scalar(u"select count(*) from tasks2"_s);
    });
    EXPECT_EQ(seenInside, u"0"_s);
    EXPECT_EQ(store.scalar(u"select count(*) from tasks2"_s), u"2"_s);
    EXPECT_EQ(store.messages(), QStringList());
}

TEST_F(TaskDatabaseTest, undoesATransactionThatThrows)
{
    EXPECT_THROW(database->inTransaction([this] {
        static_cast<void>(database->InsertTask(fullTask()));
        throw std::runtime_error("given up");
    }),
                 std::runtime_error);
    EXPECT_EQ(TaskStore::load(*database).size(), 0U);
    EXPECT_GT(database->InsertTask(fullTask()), 0);
}

TEST_F(TaskDatabaseTest, leavesNoLogBesideTheFileWhenItIsClosed)
{
    static_cast<void>(database->InsertTask(fullTask()));
    database.reset();
    EXPECT_FALSE(QFileInfo::exists(store.path() + u"-wal"_s));
    EXPECT_TRUE(QFileInfo::exists(store.path()));
}

TEST_F(TaskDatabaseTest, keepsItsFilesFromOtherUsers)
{
    static_cast<void>(database->InsertTask(fullTask()));
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    for (const QString &ending : {u""_s, u"-wal"_s, u"-shm"_s}) {
        EXPECT_FALSE(QFile::permissions(store.path() + ending) & others) << qPrintable(ending);
    }
}

TEST_F(TaskDatabaseTest, opensForOneHolderAtATime)
{
    EXPECT_EQ(store.open(), nullptr);
    EXPECT_EQ(store.openError().kind, platform::ErrorKind::TryAgain);
    database.reset();
    EXPECT_NE(store.open(), nullptr);
}

} // namespace tollivar::test
