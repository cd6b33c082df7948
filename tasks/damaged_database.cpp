#include "tasks/internal/damaged_database.h"

#include "platform/clock.h"
#include "tasks/db/sqlite3_exception.h"
#include "tasks/internal/task_rows.h"
#include "tasks/internal/transaction.h"
#include "tasks/stored_tasks.h"

#include <QDir>
#include <QFileInfo>

#include <limits>

namespace tollivar::tasks {

using namespace Qt::StringLiterals;

namespace {

using platform::ErrorKind;
using platform::Result;

/// The logs and the index of one, which SQLite finds by these endings.
constexpr std::array<QStringView, 3> kCompanions{u"-wal", u"-shm", u"-journal"};

QString freeName(const QString &path)
{
    const QFileInfo file(path);
    const QString stem = file.path() + u'/' + file.completeBaseName() + u".damaged-"_s +
                         platform::systemClock().wallNow().toString(u"yyyyMMdd-HHmmss"_s);
    const QString suffix = file.suffix().isEmpty() ? QString() : u'.' + file.suffix();
    QString name = stem + suffix;
    for (int counter = 2; QFileInfo::exists(name); ++counter) {
        name = stem + u'-' + QString::number(counter) + suffix;
    }
    return name;
}

/// Reads tasks one by one until the end, the damage, or a row that is out of order.
class DamagedRows {
public:
    DamagedRows(CppSQLite3DB &source, const QString &order)
    {
        try {
            m_rows = source.execQuery(u"select rowid,* from tasks2 order by rowid "_s + order);
            m_reader.emplace(m_rows);
        } catch (const CppSQLite3Exception &) {
            m_reader.reset();
        }
    }

    std::optional<StoredTask> next()
    {
        try {
            if (!m_reader || m_rows.eof()) {
                return std::nullopt;
            }
            if (m_isBegun) {
                m_rows.nextRow();
            }
            m_isBegun = true;
            if (m_rows.eof()) {
                return std::nullopt;
            }
            return StoredTask{m_rows.getInt64Field(0), m_reader->read(m_rows)};
        } catch (const CppSQLite3Exception &) {
            m_reader.reset();
            return std::nullopt;
        }
    }

private:
    CppSQLite3Query m_rows;
    std::optional<TaskRowReader> m_reader;
    bool m_isBegun = false;
};

CppSQLite3Statement insertWithRow(CppSQLite3DB &target)
{
    QString names = u"rowid"_s;
    QString places = u"?"_s;
    for (const TaskColumn &column : kTaskColumns) {
        names += u',' + column.name.toString();
        places += u",?"_s;
    }
    return target.compileStatement(u"INSERT INTO tasks2("_s + names + u") VALUES("_s + places +
                                   u')');
}

void insert(CppSQLite3Statement &statement, const StoredTask &stored)
{
    int place = 0;
    statement.bind(++place, QString::number(stored.row));
    for (const TaskColumn &column : kTaskColumns) {
        statement.bind(++place, columnText(stored.task, column));
    }
    statement.execDML();
}

} // namespace

Result<QString> setAside(const QString &path)
{
    const QString aside = freeName(path);
    // The log first: a log without its database would be taken for rubbish and removed.
    for (const QStringView ending : kCompanions) {
        const QString companion = path + ending.toString();
        if (QFileInfo::exists(companion) && !QDir().rename(companion, aside + ending.toString())) {
            return platform::failure(ErrorKind::AskUser,
                                     u"%1 is damaged and cannot be renamed"_s.arg(companion));
        }
    }
    if (!QDir().rename(path, aside)) {
        return platform::failure(ErrorKind::AskUser,
                                 u"%1 is damaged and cannot be renamed"_s.arg(path));
    }
    return aside;
}

int carryTasksOver(const QString &damagedPath, CppSQLite3DB &target)
{
    if (!QFileInfo(damagedPath).isFile()) {
        return 0;
    }
    CppSQLite3DB source;
    try {
        source.openReadOnly(damagedPath);
    } catch (const CppSQLite3Exception &) {
        return 0;
    }
    Transaction transaction(target);
    CppSQLite3Statement statement = insertWithRow(target);
    int count = 0;
    RowId last = std::numeric_limits<RowId>::min();
    DamagedRows upwards(source, u"asc"_s);
    // Damaged pages may lead in circles: rows count only as long as they ascend.
    for (auto stored = upwards.next(); stored && stored->row > last; stored = upwards.next()) {
        insert(statement, *stored);
        last = stored->row;
        ++count;
    }
    RowId previous = std::numeric_limits<RowId>::max();
    DamagedRows downwards(source, u"desc"_s);
    for (auto stored = downwards.next(); stored && stored->row > last && stored->row < previous;
         stored = downwards.next()) {
        insert(statement, *stored);
        previous = stored->row;
        ++count;
    }
    statement.finalize();
    transaction.commit();
    return count;
}

} // namespace tollivar::tasks
