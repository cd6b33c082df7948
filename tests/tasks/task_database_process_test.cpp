#include "tests/tasks/store_child.h"
#include "tests/tasks/store_fixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <map>
#include <random>

#include <unistd.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::RowId;
using tasks::StoredTask;

/// Rows and their sizes, as the child's lines tell them.
using Sizes = std::map<RowId, std::uint32_t>;

namespace {

Sizes storedSizes(tasks::TaskDatabase &database)
{
    Sizes sizes;
    for (const StoredTask &stored : TaskStore::load(database)) {
        sizes.emplace(stored.row, stored.task.dwSize);
    }
    return sizes;
}

void apply(Sizes &sizes, RowId row, std::uint32_t size)
{
    if (size == 0) {
        sizes.erase(row);
    } else {
        sizes[row] = size;
    }
}

/// What the child acknowledged, and the one operation that it had begun after that.
struct Account {
    Sizes sizes;
    QString begun;

    void take(const QString &line)
    {
        const QStringList words = line.split(u' ');
        if (words.value(0) == u"?") {
            begun = line;
        } else if (words.value(0) == u"!" && words.size() == 3) {
            apply(sizes, words[1].toLongLong(), words[2].toUInt());
            begun.clear();
        }
    }

    /// Everything that was acknowledged is there, and nothing beyond what had begun.
    [[nodiscard]] bool allows(const Sizes &stored) const
    {
        if (stored == sizes) {
            return true;
        }
        Sizes afterwards = sizes;
        const QStringList words = begun.split(u' ');
        if (words.value(1) == u"new") {
            for (const auto &[row, size] : stored) {
                if (!sizes.contains(row) && size == words.value(2).toUInt()) {
                    afterwards[row] = size;
                }
            }
            return stored == afterwards && stored.size() == sizes.size() + 1;
        }
        apply(afterwards, words.value(1).toLongLong(), words.value(2).toUInt());
        return stored == afterwards;
    }
};

/// What a word of the child's report says.
std::size_t reported(const QString &report, const QString &word)
{
    const auto match = QRegularExpression(word + u" (\\d+)"_s).match(report);
    EXPECT_TRUE(match.hasMatch()) << qPrintable(word + u" in: "_s + report);
    return match.captured(1).toULongLong();
}

} // namespace

TEST(TaskDatabaseProcesses, oneAtATimeMayWrite)
{
    TaskStore store;
    StoreChild holder({u"hold"_s, store.sandbox().path()});
    ASSERT_EQ(holder.readLine(), u"open"_s);
    EXPECT_EQ(store.open(), nullptr);
    EXPECT_EQ(store.openError().kind, platform::ErrorKind::TryAgain);
    EXPECT_EQ(holder.finish(), 0);
    EXPECT_NE(store.open(), nullptr);
}

TEST(TaskDatabaseProcesses, aHolderThatIsKilledLeavesTheDatabaseFree)
{
    TaskStore store;
    StoreChild holder({u"hold"_s, store.sandbox().path()});
    ASSERT_EQ(holder.readLine(), u"open"_s);
    holder.kill();
    EXPECT_EQ(holder.finish(), -1);
    EXPECT_NE(store.open(), nullptr);
}

TEST(TaskDatabaseProcesses, anotherMayReadWhileOneWrites)
{
    const TaskStore store;
    StoreChild writer({u"write"_s, store.sandbox().path(), u"1"_s});
    Account account;
    for (int line = 0; line < 400; ++line) {
        account.take(writer.readLine());
    }
    for (int round = 0; round < 50; ++round) {
        const auto tasks = tasks::readStoredTasks(store.path());
        ASSERT_TRUE(tasks) << qPrintable(tasks.error().text);
        EXPECT_FALSE(tasks->empty());
        // The writer goes on meanwhile.
        account.take(writer.readLine());
        ASSERT_FALSE(account.sizes.empty());
    }
}

TEST(TaskDatabaseProcesses, readingAfterAKillChangesNeitherTheDatabaseNorItsLog)
{
    const TaskStore store;
    StoreChild writer({u"write"_s, store.sandbox().path(), u"2"_s});
    Account account;
    for (int line = 0; line < 400; ++line) {
        account.take(writer.readLine());
    }
    ASSERT_GE(account.sizes.size(), 10U);
    writer.kill();
    EXPECT_EQ(writer.finish(), -1);
    const QByteArray before = store.sandbox().read(u"dtasks.db"_s);
    const QByteArray logBefore = store.sandbox().read(u"dtasks.db-wal"_s);
    EXPECT_FALSE(logBefore.isEmpty());

    const auto tasks = tasks::readStoredTasks(store.path());
    ASSERT_TRUE(tasks) << qPrintable(tasks.error().text);
    EXPECT_GE(tasks->size(), 10U);
    EXPECT_EQ(store.sandbox().read(u"dtasks.db"_s), before);
    EXPECT_EQ(store.sandbox().read(u"dtasks.db-wal"_s), logBefore);
}

TEST(TaskDatabaseProcesses, everyAcknowledgedRowSurvivesAKillAtAnyMoment)
{
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    RecordProperty("seed", std::to_string(seed));
    std::mt19937 random(seed);
    TaskStore store;
    Account account;
    for (int round = 0; round < 50; ++round) {
        StoreChild writer(
            {u"write"_s, store.sandbox().path(), QString::number(random() % 1'000'000)});
        for (auto lines = random() % 300; lines > 0; --lines) {
            account.take(writer.readLine());
        }
        writer.kill();
        for (QString line = writer.readLine(); !line.isEmpty(); line = writer.readLine()) {
            account.take(line);
        }
        const auto database = store.open();
        ASSERT_TRUE(database) << qPrintable(store.openError().text);
        const Sizes stored = storedSizes(*database);
        ASSERT_TRUE(account.allows(stored)) << "round " << round;
        account = {stored, {}};
    }
    EXPECT_EQ(store.messages(), QStringList());
    EXPECT_EQ(store.filesSetAside(), QStringList());
}

TEST(TaskDatabaseProcesses, aFullDiskIsToldAndLosesNothingThatWasAcknowledged)
{
    const TaskStore store;
    StoreChild child({u"full"_s, store.sandbox().path()});
    const QString report = child.readAll();
    EXPECT_EQ(child.finish(), 0) << qPrintable(report);
    const std::size_t acknowledged = reported(report, u"acknowledged"_s);
    EXPECT_GT(acknowledged, 10U);
    EXPECT_LT(acknowledged, 100'000U);
    EXPECT_EQ(reported(report, u"told"_s), 1U);
    // One message for five hundred failed inserts of one transaction.
    EXPECT_EQ(reported(report, u"transaction"_s), 1U);
    EXPECT_GE(reported(report, u"stored"_s), acknowledged);
    EXPECT_EQ(reported(report, u"reopened"_s), reported(report, u"stored"_s));
}

TEST(TaskDatabaseProcesses, aPlaceThatCannotBeWrittenIsAClearErrorAndStaysAsItIs)
{
    TaskStore store;
    static_cast<void>(store.open()->InsertTask(fullTask()));
    QFile file(store.path());
    const auto readOnly = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    ASSERT_TRUE(file.setPermissions(readOnly));
    QFile lock(store.sandbox().file(u"dtasks.lock"_s));
    ASSERT_TRUE(
        lock.setPermissions(readOnly | QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther));
    QFile folder(store.sandbox().path());
    ASSERT_TRUE(
        folder.setPermissions(readOnly | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();

    StoreChild child({u"unprivileged"_s, store.sandbox().path()});
    const QString report = child.readAll();
    EXPECT_EQ(child.finish(), 1);
    EXPECT_TRUE(report.startsWith(u"error kind=1 %1: SQLITE_"_s.arg(store.path())))
        << qPrintable(report);

    ASSERT_TRUE(folder.setPermissions(readOnly | QFile::WriteOwner | QFile::ExeOwner));
    ASSERT_TRUE(file.seek(0));
    EXPECT_EQ(file.readAll(), before);
    EXPECT_EQ(store.filesSetAside(), QStringList());
}

} // namespace tollivar::test
