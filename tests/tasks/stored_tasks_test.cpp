#include "tasks/stored_tasks.h"
#include "tests/tasks/store_fixture.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::readStoredTasks;

TEST(StoredTasks, areReadWhileTheOwnerHoldsTheDatabase)
{
    TaskStore store;
    const auto owner = store.open();
    const tasks::RowId row = owner->InsertTask(fullTask());
    auto tasks = readStoredTasks(store.path());
    ASSERT_TRUE(tasks);
    ASSERT_EQ(tasks->size(), 1U);
    EXPECT_EQ(tasks->front().row, row);
    EXPECT_EQ(tasks->front().task, asStored(fullTask()));

    // The owner goes on, and the next look shows it.
    static_cast<void>(owner->InsertTask(fullTask()));
    tasks = readStoredTasks(store.path());
    ASSERT_TRUE(tasks);
    EXPECT_EQ(tasks->size(), 2U);
    EXPECT_EQ(store.messages(), QStringList());
}

TEST(StoredTasks, areReadWithoutAnOwnerToo)
{
    TaskStore store;
    static_cast<void>(store.open()->InsertTask(fullTask()));
    for (int round = 0; round < 2; ++round) {
        const auto tasks = readStoredTasks(store.path());
        ASSERT_TRUE(tasks) << qPrintable(tasks.error().text);
        EXPECT_EQ(tasks->size(), 1U);
    }
    EXPECT_NE(store.open(), nullptr);
}

TEST(StoredTasks, areNoneBeforeTheFirstStart)
{
    const TaskStore store;
    const auto tasks = readStoredTasks(store.path());
    ASSERT_TRUE(tasks);
    EXPECT_TRUE(tasks->empty());
    EXPECT_TRUE(QDir(store.sandbox().path()).isEmpty());
}

TEST(StoredTasks, ofADamagedFileAreAnErrorAndTheFileStays)
{
    const TaskStore store;
    store.sandbox().write(u"dtasks.db"_s, "rubbish");
    const auto tasks = readStoredTasks(store.path());
    ASSERT_FALSE(tasks);
    EXPECT_EQ(tasks.error().kind, platform::ErrorKind::AskUser);
    EXPECT_EQ(store.sandbox().read(u"dtasks.db"_s), QByteArray("rubbish"));
}

TEST(StoredTasks, ofAFolderAreAnError)
{
    const TaskStore store;
    ASSERT_TRUE(QDir().mkpath(store.path()));
    EXPECT_FALSE(readStoredTasks(store.path()));
}

} // namespace tollivar::test
