#include "tasks/task_database.h"

#include "platform/file_lock.h"
#include "tasks/db/sqlite3_db.h"
#include "tasks/db/sqlite3_exception.h"
#include "tasks/internal/damaged_database.h"
#include "tasks/internal/database_connection.h"
#include "tasks/internal/task_rows.h"
#include "tasks/internal/task_schema.h"
#include "tasks/internal/task_statements.h"
#include "tasks/internal/transaction.h"
#include "tasks/legacy_import.h"

#include <QFileInfo>
#include <QScopeGuard>
#include <QSet>

#include <limits>

namespace tollivar::tasks {

using namespace Qt::StringLiterals;
using platform::ErrorKind;
using platform::Result;

namespace {

using Receiver = std::function<void(RowId, TaskInfo &&)>;

QString lockPathBeside(const QString &databasePath)
{
    return QFileInfo(databasePath).path() + u"/dtasks.lock"_s;
}

tl::unexpected<platform::Error> openFailure(const QString &path, const CppSQLite3Exception &error)
{
    return platform::failure(error.isBusy() ? ErrorKind::TryAgain : ErrorKind::AskUser,
                             u"%1: %2"_s.arg(path, error.errorMessage()), error.errorCode());
}

QString setAsideMessage(const QString &path, const QString &aside, int carriedOver)
{
    const QString start =
        u"The task list \"%1\" was damaged and has been set aside as \"%2\"."_s.arg(
            path, QFileInfo(aside).fileName());
    if (carriedOver == 0) {
        return start + u" A new, empty list was begun."_s;
    }
    return start +
           u" A new list was begun with the %1 tasks that could still be read."_s.arg(carriedOver);
}

} // namespace

struct TaskDatabase::Private {
    QString path;
    Notifier notifier;
    std::unique_ptr<platform::FileLock> lock; ///< above the connection, so that it outlives it
    CppSQLite3DB database;
    Durability durability = Durability::Durable; ///< what the connection is set to
    int transactionDepth = 0;
    QSet<QString> toldInTransaction;

    void notify(const QString &message);
    void guarded(const std::function<void()> &operation);
    void execute(const QString &sql, Durability asked);
    void setDurability(Durability asked);

    Result<void> openOrReplace(const QString &legacyListPath);
    Result<void> replaceDamaged();
    void importOldList(CppSQLite3DB &target, const QString &legacyListPath);
    void load(const QString &sql, const Receiver &receive, RowId &last);
    void loadOrReplace(const Receiver &receive);
};

void TaskDatabase::Private::notify(const QString &message)
{
    // One full disk is one message, not one for each of a thousand rows.
    if (transactionDepth > 0) {
        if (toldInTransaction.contains(message)) {
            return;
        }
        toldInTransaction.insert(message);
    }
    if (notifier) {
        notifier(message);
    }
}

void TaskDatabase::Private::guarded(const std::function<void()> &operation)
{
    try {
        operation();
    } catch (const CppSQLite3Exception &error) {
        notify(error.errorMessage());
    }
}

void TaskDatabase::Private::execute(const QString &sql, Durability asked)
{
    setDurability(asked);
    database.execDML(sql);
}

void TaskDatabase::Private::setDurability(Durability asked)
{
    // SQLite refuses the change inside a transaction, which is durable as a whole anyway.
    if (transactionDepth > 0 || asked == durability) {
        return;
    }
    database.execDML(asked == Durability::Durable ? u"PRAGMA synchronous = FULL"_s
                                                  : u"PRAGMA synchronous = NORMAL"_s);
    durability = asked;
}

Result<void> TaskDatabase::Private::openOrReplace(const QString &legacyListPath)
{
    const QFileInfo file(path);
    if (file.exists() && !file.isFile()) {
        return replaceDamaged();
    }
    try {
        connectToTasks(database, path, [this, &legacyListPath](CppSQLite3DB &target) {
            importOldList(target, legacyListPath);
        });
        guarded([this] { ensureTaskSchema(database); });
        return {};
    } catch (const CppSQLite3Exception &error) {
        if (error.isDamagedFile()) {
            return replaceDamaged();
        }
        return openFailure(path, error);
    }
}

Result<void> TaskDatabase::Private::replaceDamaged()
{
    database = CppSQLite3DB();
    durability = Durability::Durable;
    const Result<QString> aside = setAside(path);
    if (!aside) {
        return tl::unexpected(aside.error());
    }
    int carriedOver = 0;
    try {
        connectToTasks(database, path, [&aside, &carriedOver](CppSQLite3DB &target) {
            carriedOver = carryTasksOver(*aside, target);
        });
    } catch (const CppSQLite3Exception &error) {
        return openFailure(setAsideMessage(path, *aside, 0), error);
    }
    notify(setAsideMessage(path, *aside, carriedOver));
    return {};
}

void TaskDatabase::Private::importOldList(CppSQLite3DB &target, const QString &legacyListPath)
{
    // What was inserted before a failure stays.
    guarded([&] {
        for (const TaskInfo &task : readOldList(legacyListPath)) {
            target.execDML(insertStatement(task));
        }
    });
}

void TaskDatabase::Private::load(const QString &sql, const Receiver &receive, RowId &last)
{
    CppSQLite3Query rows = database.execQuery(sql);
    const TaskRowReader reader(rows);
    for (; !rows.eof(); rows.nextRow()) {
        last = rows.getInt64Field(0);
        receive(last, reader.read(rows));
    }
}

void TaskDatabase::Private::loadOrReplace(const Receiver &receive)
{
    RowId last = std::numeric_limits<RowId>::min();
    try {
        load(u"select rowid,* from tasks2"_s, receive, last);
        return;
    } catch (const CppSQLite3Exception &error) {
        if (!error.isDamagedFile()) {
            throw;
        }
    }
    const Result<void> replaced = replaceDamaged();
    if (!replaced) {
        notify(replaced.error().text);
        return;
    }
    // Tasks keep their row ids on the way to the new file, so that those handed over stay valid.
    load(u"select rowid,* from tasks2 where rowid > "_s + QString::number(last), receive, last);
}

TaskDatabase::TaskDatabase(std::unique_ptr<Private> parts) : d(std::move(parts)) {}
TaskDatabase::~TaskDatabase() = default;

Result<std::unique_ptr<TaskDatabase>>
TaskDatabase::open(const QString &databasePath, const QString &legacyListPath, Notifier notifier)
{
    auto lock = platform::FileLock::take(lockPathBeside(databasePath));
    if (!lock) {
        return tl::unexpected(lock.error());
    }
    auto parts = std::make_unique<Private>();
    parts->path = databasePath;
    parts->notifier = std::move(notifier);
    parts->lock = *std::move(lock);
    const Result<void> opened = parts->openOrReplace(legacyListPath);
    if (!opened) {
        return tl::unexpected(opened.error());
    }
    return std::unique_ptr<TaskDatabase>(new TaskDatabase(std::move(parts)));
}

void TaskDatabase::EnsureSchema()
{
    d->guarded([this] { ensureTaskSchema(d->database); });
}

void TaskDatabase::LoadTasks(const Receiver &receive)
{
    d->guarded([this, &receive] {
        ensureTaskSchema(d->database);
        d->loadOrReplace(receive);
    });
}

RowId TaskDatabase::InsertTask(const TaskInfo &task)
{
    RowId row = 0;
    d->guarded([this, &task, &row] {
        d->execute(insertStatement(task), Durability::Durable);
        row = d->database.lastRowId();
    });
    return row;
}

void TaskDatabase::UpdateText(RowId row, TextColumn column, const QString &value)
{
    d->guarded([this, row, column, &value] {
        d->execute(updateStatement(row, columnName(column), value), Durability::Durable);
    });
}

void TaskDatabase::UpdateInt(RowId row, NumberColumn column, std::int32_t value,
                             Durability durability)
{
    d->guarded([this, row, column, value, durability] {
        d->execute(updateStatement(row, columnName(column), QString::number(value)), durability);
    });
}

void TaskDatabase::DeleteTask(RowId row)
{
    d->guarded([this, row] {
        ensureTaskSchema(d->database);
        d->execute(deleteStatement(row), Durability::Durable);
    });
}

void TaskDatabase::inTransaction(const std::function<void()> &work)
{
    std::optional<Transaction> transaction;
    d->guarded([this, &transaction] {
        d->setDurability(Durability::Durable);
        transaction.emplace(d->database);
    });
    const auto leave = qScopeGuard([this] {
        if (--d->transactionDepth == 0) {
            d->toldInTransaction.clear();
        }
    });
    ++d->transactionDepth;
    work();
    try {
        if (transaction) {
            transaction->commit();
        }
    } catch (const CppSQLite3Exception &error) {
        // When SQLite has given the transaction up, the failed statement told why.
        if (d->toldInTransaction.isEmpty()) {
            d->notify(error.errorMessage());
        }
    }
}

} // namespace tollivar::tasks
