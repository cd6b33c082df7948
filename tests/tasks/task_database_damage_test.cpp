#include "tests/tasks/store_fixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::RowId;
using tasks::StoredTask;
using tasks::TaskInfo;

namespace {

constexpr int kPageSize = 4096;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

/// Overwrites a part of the file in place, as a broken disk does.
void overwrite(const QString &path, qsizetype at, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.seek(at));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

std::vector<StoredTask> manyTasks(int count)
{
    std::vector<StoredTask> tasks;
    for (int number = 1; number <= count; ++number) {
        TaskInfo task = asStored(fullTask());
        task.strOriURL = u"https://videos.example/%1"_s.arg(number);
        tasks.push_back({number, task});
    }
    return tasks;
}

void insertAll(tasks::TaskDatabase &database, const std::vector<StoredTask> &tasks)
{
    database.inTransaction([&] {
        for (const StoredTask &stored : tasks) {
            EXPECT_EQ(database.InsertTask(stored.task), stored.row);
        }
    });
}

/// How many of `expected` are in `stored` under their row ids, unchanged.
std::size_t countUnchanged(const std::vector<StoredTask> &stored,
                           const std::vector<StoredTask> &expected)
{
    std::size_t count = 0;
    for (const StoredTask &task : stored) {
        const auto row = static_cast<std::size_t>(task.row);
        if (row >= 1 && row <= expected.size() && expected[row - 1].task == task.task) {
            ++count;
        }
    }
    return count;
}

} // namespace

/// What stands in the database's place, and how it got there from a good file of 50 tasks.
struct DamageRow {
    const char *name;
    std::function<void(const TaskStore &)> damage;
};

void PrintTo(const DamageRow &row, std::ostream *out)
{
    *out << row.name;
}

class DamagedDatabase : public testing::TestWithParam<DamageRow> {};

TEST_P(DamagedDatabase, isSetAsideToldAndReplaced)
{
    TaskStore store;
    // A list that was carried over once must not come back to life.
    store.sandbox().write(u"dtasks.ini"_s, "[GENERAL]\nTaskCount=0");
    insertAll(*store.open(), manyTasks(50));
    GetParam().damage(store);
    const bool isFile = QFileInfo(store.path()).isFile();
    const QByteArray damaged = isFile ? contentOf(store.path()) : QByteArray();

    const auto database = store.open();
    ASSERT_TRUE(database) << qPrintable(store.openError().text);
    ASSERT_EQ(store.messages().size(), 1);
    EXPECT_TRUE(store.messages().front().contains(u"was damaged and has been set aside as"))
        << qPrintable(store.messages().front());
    ASSERT_GE(store.filesSetAside().size(), 1);
    const QString aside = store.filesSetAside().front();
    EXPECT_TRUE(store.messages().front().contains(aside));
    EXPECT_TRUE(aside.startsWith(u"dtasks.damaged-") && aside.endsWith(u".db"));
    if (isFile) {
        EXPECT_EQ(contentOf(store.sandbox().file(aside)), damaged);
    }

    const RowId row = database->InsertTask(fullTask());
    EXPECT_GT(row, 0);
    EXPECT_EQ(TaskStore::load(*database).back().task, asStored(fullTask()));
    EXPECT_EQ(store.messages().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(
    TaskDatabase, DamagedDatabase,
    testing::Values(
        DamageRow{"textFile",
                  [](const TaskStore &store) {
                      store.sandbox().write(u"dtasks.db"_s, "Dear diary, today I downloaded");
                  }},
        DamageRow{"longTextFile",
                  [](const TaskStore &store) {
                      store.sandbox().write(u"dtasks.db"_s, QByteArray("text ").repeated(5000));
                  }},
        DamageRow{"zeros",
                  [](const TaskStore &store) {
                      store.sandbox().write(u"dtasks.db"_s, QByteArray(20'000, '\0'));
                  }},
        DamageRow{"directory",
                  [](const TaskStore &store) {
                      QFile::remove(store.path());
                      QDir().mkpath(store.path() + u"/inside"_s);
                  }},
        DamageRow{"cutInHalf",
                  [](const TaskStore &store) {
                      QFile file(store.path());
                      EXPECT_TRUE(file.resize(file.size() / 2));
                  }},
        DamageRow{"cutInTheMiddleOfAPage",
                  [](const TaskStore &store) {
                      QFile file(store.path());
                      EXPECT_TRUE(file.resize(file.size() - kPageSize - 100));
                  }},
        DamageRow{"cutBehindTheHeader",
                  [](const TaskStore &store) { EXPECT_TRUE(QFile::resize(store.path(), 100)); }},
        DamageRow{"brokenMagic", [](const TaskStore &store) { overwrite(store.path(), 3, "XX"); }},
        DamageRow{
            "brokenFirstPage",
            [](const TaskStore &store) { overwrite(store.path(), 100, QByteArray(200, '\xee')); }},
        DamageRow{"emptiedFirstPage",
                  [](const TaskStore &store) {
                      // A valid page that holds no table at all.
                      overwrite(store.path(), 103, QByteArray("\0\0\x10\0\0", 5));
                  }},
        DamageRow{"brokenTaskPage",
                  [](const TaskStore &store) {
                      overwrite(store.path(), 3 * kPageSize, QByteArray(kPageSize, '\x5a'));
                  }},
        DamageRow{"otherColumns",
                  [](const TaskStore &store) {
                      store.runSql(u"DROP TABLE tasks2"_s);
                      store.runSql(u"CREATE TABLE tasks2(strOriURL NTEXT)"_s);
                  }}),
    [](const testing::TestParamInfo<DamageRow> &row) { return row.param.name; });

TEST(DamagedTaskDatabase, keepsWhatCanBeReadFromBothEnds)
{
    TaskStore store;
    const std::vector<StoredTask> tasks = manyTasks(2000);
    insertAll(*store.open(), tasks);
    const qsizetype size = QFileInfo(store.path()).size();
    overwrite(store.path(), size / 2 / kPageSize * kPageSize, QByteArray(kPageSize, '\x5a'));

    const auto database = store.open();
    ASSERT_TRUE(database);
    const std::vector<StoredTask> kept = TaskStore::load(*database);
    EXPECT_GT(kept.size(), tasks.size() * 9 / 10);
    EXPECT_LT(kept.size(), tasks.size());
    EXPECT_EQ(countUnchanged(kept, tasks), kept.size());
    EXPECT_EQ(kept.front().row, 1);
    EXPECT_EQ(kept.back().row, 2000);
    EXPECT_TRUE(store.messages().value(0).contains(
        u"with the %1 tasks that could still be read"_s.arg(kept.size())))
        << qPrintable(store.messages().value(0));
}

TEST(DamagedTaskDatabase, keepsTheColumnsThatATableOfAnotherShapeHas)
{
    TaskStore store;
    insertAll(*store.open(), manyTasks(3));
    store.runSql(u"ALTER TABLE tasks2 ADD COLUMN colour NTEXT"_s);
    store.runSql(u"ALTER TABLE tasks2 RENAME COLUMN strAgent TO agent"_s);
    const auto database = store.open();
    ASSERT_TRUE(database);
    const std::vector<StoredTask> kept = TaskStore::load(*database);
    ASSERT_EQ(kept.size(), 3U);
    TaskInfo expected = manyTasks(3).back().task;
    expected.strAgent.clear();
    EXPECT_EQ(kept.back().task, expected);
    EXPECT_EQ(kept.back().row, 3);
}

TEST(DamagedTaskDatabase, isReplacedWhenTheDamageShowsWhileLoading)
{
    TaskStore store;
    const std::vector<StoredTask> tasks = manyTasks(4000);
    insertAll(*store.open(), tasks);
    const auto database = store.open();
    ASSERT_TRUE(database);
    const qsizetype size = QFileInfo(store.path()).size();
    overwrite(store.path(), size / 2 / kPageSize * kPageSize, QByteArray(kPageSize, '\x5a'));

    const std::vector<StoredTask> loaded = TaskStore::load(*database);
    EXPECT_GT(loaded.size(), tasks.size() * 9 / 10);
    EXPECT_EQ(countUnchanged(loaded, tasks), loaded.size());
    std::set<RowId> rows;
    for (const StoredTask &stored : loaded) {
        rows.insert(stored.row);
    }
    EXPECT_EQ(rows.size(), loaded.size());
    EXPECT_EQ(store.messages().size(), 1);
    EXPECT_EQ(store.filesSetAside().size(), 1);
    // What was handed over before the damage is the same row afterwards.
    database->UpdateText(1, tasks::TextColumn::OutputName, u"changed"_s);
    EXPECT_EQ(TaskStore::load(*database).front().task.strOutputName, u"changed"_s);
    EXPECT_EQ(store.messages().size(), 1);
}

TEST(DamagedTaskDatabase, doesNotBringAnOldListBack)
{
    TaskStore store;
    store.sandbox().write(u"dtasks.ini"_s, "[GENERAL]\nTaskCount=1\n[TASKINFO]\n0_LEN=1" +
                                               QByteArray(" 0").repeated(27) + "\n0_STRING=x");
    ASSERT_TRUE(store.open());
    store.sandbox().write(u"dtasks.db"_s, "rubbish");
    const auto database = store.open();
    ASSERT_TRUE(database);
    EXPECT_TRUE(TaskStore::load(*database).empty());
}

TEST(DamagedTaskDatabase, neverTakesANameThatIsTaken)
{
    TaskStore store;
    for (int round = 1; round <= 4; ++round) {
        store.sandbox().write(u"dtasks.db"_s, "rubbish %1" + QByteArray::number(round));
        ASSERT_TRUE(store.open());
        EXPECT_EQ(store.filesSetAside().size(), round);
    }
}

TEST(DamagedTaskDatabase, ignoresALogThatIsRubbish)
{
    TaskStore store;
    insertAll(*store.open(), manyTasks(5));
    store.sandbox().write(u"dtasks.db-wal"_s, QByteArray("rubbish").repeated(1000));
    store.sandbox().write(u"dtasks.db-shm"_s, QByteArray("rubbish").repeated(1000));
    const auto database = store.open();
    ASSERT_TRUE(database);
    EXPECT_EQ(countUnchanged(TaskStore::load(*database), manyTasks(5)), 5U);
    EXPECT_EQ(store.messages(), QStringList());
}

TEST(DamagedTaskDatabase, beginsAnewInAnEmptyFile)
{
    TaskStore store;
    store.sandbox().write(u"dtasks.db"_s, {});
    const auto database = store.open();
    ASSERT_TRUE(database);
    EXPECT_GT(database->InsertTask(fullTask()), 0);
    EXPECT_EQ(store.messages(), QStringList());
}

TEST(DamagedTaskDatabase, neverCrashesAndAlwaysEndsUsable)
{
    // Its rounds hold a schema format that no release knows, beside the common damages.
    constexpr unsigned seed = 2'795'463'147;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    TaskStore good;
    insertAll(*good.open(), manyTasks(60));
    const QByteArray content = contentOf(good.path());
    const auto size = static_cast<std::size_t>(content.size());
    for (int round = 0; round < 150; ++round) {
        QByteArray damaged = content;
        for (auto flips = 1 + random() % 8; flips > 0; --flips) {
            // The first page decides most, so half of the flips go there.
            const std::size_t range = random() % 2 == 0 ? kPageSize : size;
            damaged[static_cast<qsizetype>(random() % range)] ^=
                static_cast<char>(1 + random() % 255);
        }
        if (random() % 4 == 0) {
            damaged.truncate(static_cast<qsizetype>(random() % size));
        }
        TaskStore store;
        store.sandbox().write(u"dtasks.db"_s, damaged);
        const auto database = store.open();
        ASSERT_TRUE(database) << "round " << round << ": " << qPrintable(store.openError().text);
        static_cast<void>(TaskStore::load(*database));
        EXPECT_GT(database->InsertTask(fullTask()), 0) << "round " << round;
        EXPECT_EQ(TaskStore::load(*database).back().task, asStored(fullTask()))
            << "round " << round;
    }
}

TEST(TaskDatabasePlace, thatIsMissingIsAClearError)
{
    auto opened = tasks::TaskDatabase::open(u"/nowhere/at/all/dtasks.db"_s, {}, {});
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error().kind, platform::ErrorKind::AskUser);
    EXPECT_TRUE(opened.error().text.contains(u"/nowhere/at/all/"));
}

TEST(TaskDatabasePlace, withAFolderInThePlaceOfTheLockIsAClearError)
{
    TaskStore store;
    ASSERT_TRUE(QDir().mkpath(store.sandbox().file(u"dtasks.lock"_s)));
    EXPECT_EQ(store.open(), nullptr);
    EXPECT_EQ(store.openError().kind, platform::ErrorKind::AskUser);
    EXPECT_FALSE(QFileInfo::exists(store.path()));
}

} // namespace tollivar::test
