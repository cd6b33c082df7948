// The task database beside the same work done by bare calls of SQLite: what quoting, records and
// the checks at opening cost. One update's p50 and p99 are printed as counters, in microseconds.

#include "tasks/task_database.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <vector>

namespace {

using namespace Qt::StringLiterals;
using namespace tollivar::tasks;

constexpr int kManyTasks = 100'000;

/// Of the size that a captured video has: a watch page, a long media address, cookies, an agent.
TaskInfo ordinaryTask(int number)
{
    TaskInfo task;
    task.strOriURL = u"https://videos.example/watch?v=%1&list=favourites"_s.arg(number);
    task.strDownloadUrl = u"https://media%1.videos.example/clips/"_s.arg(number % 7) +
                          QString(120, u'k') + u"?expires=1700000000&signature=%1"_s.arg(number);
    task.strOutputFolder = u"/home/somebody/Videos/Captured/"_s;
    task.strOutputName = u"Somebody's clip number %1 - the whole story"_s.arg(number);
    task.strCookies = u"session="_s + QString(64, u'c');
    task.strAgent = u"Mozilla/5.0 (X11; Linux x86_64) AppleWebKit/537.36 (KHTML, like Gecko)"_s;
    task.strReferer = task.strOriURL;
    task.m_ConvOpts.m_csVideoSizeOpts = u"640x480"_s;
    task.m_ConvOpts.m_csVideoBitRateOpts = u"Auto"_s;
    task.m_ConvOpts.m_csAudioBitRateOpts = u"128"_s;
    task.m_ConvOpts.m_csProfileName = u"MP4 video"_s;
    task.m_ConvOpts.m_csType = u".mp4"_s;
    task.dwSize = 50'000'000;
    return task;
}

std::unique_ptr<TaskDatabase> open(const QString &path)
{
    auto opened = TaskDatabase::open(path, {}, {});
    if (!opened) {
        qFatal("%s", qPrintable(opened.error().text));
    }
    return *std::move(opened);
}

QString pathIn(const QTemporaryDir &directory)
{
    return directory.filePath(u"dtasks.db"_s);
}

/// A database of kManyTasks, made once.
const QTemporaryDir &filledDirectory()
{
    static const QTemporaryDir directory;
    static const bool isFilled = [] {
        const auto database = open(pathIn(directory));
        database->inTransaction([&database] {
            for (int number = 0; number < kManyTasks; ++number) {
                static_cast<void>(database->InsertTask(ordinaryTask(number)));
            }
        });
        return true;
    }();
    benchmark::DoNotOptimize(isFilled);
    return directory;
}

/// A bare connection, set up as the task database sets up its own.
class BareDatabase {
public:
    explicit BareDatabase(const QString &path)
    {
        check(sqlite3_open16(path.utf16(), &m_handle));
        run("PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL");
    }
    ~BareDatabase() { sqlite3_close(m_handle); }
    BareDatabase(const BareDatabase &) = delete;
    BareDatabase &operator=(const BareDatabase &) = delete;

    void run(const char *sql) { check(sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr)); }

    [[nodiscard]] sqlite3_stmt *prepare(const char *sql)
    {
        sqlite3_stmt *statement = nullptr;
        check(sqlite3_prepare_v2(m_handle, sql, -1, &statement, nullptr));
        return statement;
    }

    /// Runs a statement whose values are bound, and makes it ready for the next run.
    void step(sqlite3_stmt *statement)
    {
        sqlite3_step(statement);
        check(sqlite3_reset(statement));
    }

private:
    void check(int code)
    {
        if (code != SQLITE_OK) {
            qFatal("%s", sqlite3_errmsg(m_handle));
        }
    }

    sqlite3 *m_handle = nullptr;
};

/// Times single operations; a mean would hide the checkpoints.
class Latencies {
public:
    template<typename Operation>
    void measure(Operation operation)
    {
        const auto start = std::chrono::steady_clock::now();
        operation();
        m_microseconds.push_back(
            std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
                .count());
    }

    void reportTo(benchmark::State &state)
    {
        std::sort(m_microseconds.begin(), m_microseconds.end());
        const auto at = [this](std::size_t percent) {
            return m_microseconds.at((m_microseconds.size() - 1) * percent / 100);
        };
        state.counters["p50_us"] = at(50);
        state.counters["p99_us"] = at(99);
    }

private:
    std::vector<double> m_microseconds;
};

void insertOne(benchmark::State &state)
{
    const QTemporaryDir directory;
    const auto database = open(pathIn(directory));
    Latencies latencies;
    int number = 0;
    for ([[maybe_unused]] auto round : state) {
        latencies.measure(
            [&] { benchmark::DoNotOptimize(database->InsertTask(ordinaryTask(++number))); });
    }
    latencies.reportTo(state);
}
BENCHMARK(insertOne)->Iterations(2000);

void insertOneBare(benchmark::State &state)
{
    const QTemporaryDir directory;
    open(pathIn(directory)).reset();
    BareDatabase database(pathIn(directory));
    std::string sql = "INSERT INTO tasks2 VALUES(?";
    for (std::size_t column = 1; column < kTaskColumnCount; ++column) {
        sql += ",?";
    }
    sqlite3_stmt *insert = database.prepare((sql + ")").c_str());
    Latencies latencies;
    int number = 0;
    for ([[maybe_unused]] auto round : state) {
        latencies.measure([&] {
            const TaskInfo task = ordinaryTask(++number);
            int place = 0;
            for (const TaskColumn &column : kTaskColumns) {
                const QString text = columnText(task, column);
                sqlite3_bind_text16(insert, ++place, text.utf16(),
                                    static_cast<int>(text.size() * 2), SQLITE_TRANSIENT);
            }
            database.step(insert);
        });
    }
    sqlite3_finalize(insert);
    latencies.reportTo(state);
}
BENCHMARK(insertOneBare)->Iterations(2000);

/// Another value at every call, over all runs: SQLite writes nothing for a row that stays as it is.
std::int32_t nextByteCount()
{
    static std::int32_t bytes = 0;
    return bytes += 97;
}

void updateOneColumn(benchmark::State &state)
{
    const auto durability = static_cast<Durability>(state.range(0));
    const auto database = open(pathIn(filledDirectory()));
    Latencies latencies;
    for ([[maybe_unused]] auto round : state) {
        latencies.measure([&] {
            const std::int32_t bytes = nextByteCount();
            database->UpdateInt(1 + bytes % kManyTasks, NumberColumn::DownloadSize, bytes,
                                durability);
        });
    }
    latencies.reportTo(state);
}
BENCHMARK(updateOneColumn)
    ->ArgName("progress")
    ->Arg(static_cast<int>(Durability::Durable))
    ->Arg(static_cast<int>(Durability::Progress))
    ->Iterations(5000);

void updateOneColumnBare(benchmark::State &state)
{
    BareDatabase database(pathIn(filledDirectory()));
    if (static_cast<Durability>(state.range(0)) == Durability::Progress) {
        database.run("PRAGMA synchronous=NORMAL");
    }
    sqlite3_stmt *update = database.prepare("UPDATE tasks2 SET dwDownloadSize=? WHERE rowid=?");
    Latencies latencies;
    for ([[maybe_unused]] auto round : state) {
        latencies.measure([&] {
            const std::int32_t bytes = nextByteCount();
            sqlite3_bind_int(update, 1, bytes);
            sqlite3_bind_int(update, 2, 1 + bytes % kManyTasks);
            database.step(update);
        });
    }
    sqlite3_finalize(update);
    latencies.reportTo(state);
}
BENCHMARK(updateOneColumnBare)
    ->ArgName("progress")
    ->Arg(static_cast<int>(Durability::Durable))
    ->Arg(static_cast<int>(Durability::Progress))
    ->Iterations(5000);

void openManyTasks(benchmark::State &state)
{
    const QString path = pathIn(filledDirectory());
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(open(path));
    }
}
BENCHMARK(openManyTasks)->Unit(benchmark::kMillisecond);

void loadManyTasks(benchmark::State &state)
{
    const auto database = open(pathIn(filledDirectory()));
    for ([[maybe_unused]] auto round : state) {
        std::vector<StoredTask> tasks;
        database->LoadTasks([&tasks](RowId row, TaskInfo &&task) {
            tasks.push_back({row, std::move(task)});
        });
        if (tasks.size() != kManyTasks) {
            state.SkipWithError("not every task was loaded");
        }
    }
}
BENCHMARK(loadManyTasks)->Unit(benchmark::kMillisecond);

/// Reads every value where SQLite holds it, without making records.
void loadManyTasksBare(benchmark::State &state)
{
    BareDatabase database(pathIn(filledDirectory()));
    for ([[maybe_unused]] auto round : state) {
        sqlite3_stmt *rows = database.prepare("select rowid,* from tasks2");
        int bytes = 0;
        while (sqlite3_step(rows) == SQLITE_ROW) {
            for (int column = 0; column < sqlite3_column_count(rows); ++column) {
                benchmark::DoNotOptimize(sqlite3_column_text16(rows, column));
                bytes += sqlite3_column_bytes16(rows, column);
            }
        }
        benchmark::DoNotOptimize(bytes);
        sqlite3_finalize(rows);
    }
}
BENCHMARK(loadManyTasksBare)->Unit(benchmark::kMillisecond);

} // namespace
