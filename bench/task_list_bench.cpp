// The task list with 100,000 tasks, drawn off the screen: its first paint, a frame of scrolling, a
// row that reports, sorting. The peer is Qt's own table over a model that returns the same texts;
// the counters give each time as a part of its limit: a frame of 16 ms, a sort of 300 ms.

#include "tasks/task_manager.h"
#include "ui/skin/paint_manager.h"
#include "ui/task_list/list_ctrl_ex.h"

#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>

namespace {

using namespace Qt::StringLiterals;
using namespace tollivar;
using Clock = std::chrono::steady_clock;

constexpr int kTasks = 100'000;
constexpr double kFrameLimitMs = 16;
constexpr double kSortLimitMs = 300;
const QSize kWindow(1'000, 700);

class IdleWorker final : public tasks::TaskWorker {
public:
    void run() override {}
};

tasks::TaskInfo ordinaryTask(int number)
{
    static const QStringList types = {u".mp4"_s, u".flv"_s, u".webm"_s, u".mp3"_s};
    tasks::TaskInfo task;
    task.strOriURL = u"https://videos.example/watch?v=%1"_s.arg(number);
    task.strOutputFolder = u"/home/somebody/Videos/"_s;
    // Neither sorted nor backwards.
    task.strOutputName =
        u"Somebody's clip number %1 - the whole story"_s.arg(number * 7'919LL % kTasks);
    task.strFileType = types[number % types.size()];
    task.dwSize = 50'000'000;
    task.dwDownloadSize = static_cast<std::uint32_t>(number);
    task.nModeHigh = number % 7;
    return task;
}

/// The tasks, each tenth of which downloads.
class World {
public:
    World()
        : m_database(*tasks::TaskDatabase::open(m_directory.filePath(u"dtasks.db"_s),
                                                m_directory.filePath(u"dtasks.ini"_s), {}))
        , m_manager(*m_database, [] { return std::make_shared<IdleWorker>(); }, {}, {})
    {
        m_manager.setFilter(tasks::TaskFilter::All);
        for (int number = 0; number < kTasks; ++number) {
            const std::uint32_t id =
                m_manager.addTask(ordinaryTask(number), tasks::TaskOrigin::Stored, number + 1);
            tasks::TaskWorker &worker = *m_manager.worker(id);
            worker.setState(number % 10 == 0 ? tasks::TaskState::Downloading
                                             : tasks::TaskState::Stopped);
            worker.setProgress({.percentHundredths = static_cast<float>(number % 10'000),
                                .bytesPerSecond = 1'000.0 * (number % 977),
                                .secondsLeft = number % 5'000,
                                .bytesDownloaded = static_cast<std::uint32_t>(number)});
        }
    }

    [[nodiscard]] tasks::TaskManager &manager() { return m_manager; }

private:
    QTemporaryDir m_directory;
    std::unique_ptr<tasks::TaskDatabase> m_database;
    tasks::TaskManager m_manager;
};

World &world()
{
    static World theWorld;
    return theWorld;
}

std::unique_ptr<ui::CListCtrlEx> shownList()
{
    auto list = std::make_unique<ui::CListCtrlEx>([](const QString &id) { return id; });
    list->resize(kWindow);
    list->attach(&world().manager());
    list->show();
    QApplication::processEvents();
    return list;
}

/// Qt's table as it comes, with the same texts in rows of the same height.
class PlainTable {
public:
    PlainTable() : m_texts(shownList())
    {
        m_table.setModel(m_texts->model());
        m_table.verticalHeader()->setDefaultSectionSize(m_texts->rowHeight());
        m_table.verticalHeader()->hide();
        m_table.setVerticalScrollMode(QTableView::ScrollPerPixel);
        m_table.resize(kWindow);
        m_table.show();
        QApplication::processEvents();
    }

    [[nodiscard]] QTableView &table() { return m_table; }

private:
    std::unique_ptr<ui::CListCtrlEx> m_texts;
    QTableView m_table;
};

void tellPartOf(benchmark::State &state, double limitMs, Clock::duration spent)
{
    const double milliseconds = std::chrono::duration<double, std::milli>(spent).count();
    state.counters["part_of_limit"] =
        milliseconds / static_cast<double>(state.iterations()) / limitMs;
}

/// Runs `step` in each iteration and lets the windows paint what it changed.
template<typename Step>
void measure(benchmark::State &state, double limitMs, Step step)
{
    const auto begin = Clock::now();
    for (auto iteration : state) {
        static_cast<void>(iteration);
        step();
        QApplication::processEvents();
    }
    tellPartOf(state, limitMs, Clock::now() - begin);
}

void scrollOn(QTableView &table)
{
    constexpr int kStep = 37;
    QScrollBar &bar = *table.verticalScrollBar();
    bar.setValue((bar.value() + kStep) % bar.maximum());
}

void listFirstPaint(benchmark::State &state)
{
    const auto list = shownList();
    measure(state, kFrameLimitMs, [&list] {
        list->attach(nullptr);
        list->attach(&world().manager());
    });
}

void listRepaint(benchmark::State &state)
{
    const auto list = shownList();
    measure(state, kFrameLimitMs, [&list] { list->viewport()->update(); });
}

void plainTableRepaint(benchmark::State &state)
{
    PlainTable plain;
    measure(state, kFrameLimitMs, [&plain] { plain.table().viewport()->update(); });
}

void listScroll(benchmark::State &state)
{
    const auto list = shownList();
    measure(state, kFrameLimitMs, [&list] { scrollOn(*list); });
}

void plainTableScroll(benchmark::State &state)
{
    PlainTable plain;
    measure(state, kFrameLimitMs, [&plain] { scrollOn(plain.table()); });
}

void listRowUpdate(benchmark::State &state)
{
    const auto list = shownList();
    measure(state, kFrameLimitMs, [&list] { list->redrawRow(3); });
}

void plainTableRowUpdate(benchmark::State &state)
{
    PlainTable plain;
    QTableView &table = plain.table();
    measure(state, kFrameLimitMs, [&table] {
        Q_EMIT table.model()->dataChanged(table.model()->index(3, 0), table.model()->index(3, 5));
    });
}

void listRowUpdateOutOfSight(benchmark::State &state)
{
    const auto list = shownList();
    measure(state, kFrameLimitMs, [&list] { list->redrawRow(kTasks / 2); });
}

/// By the column of the argument, turning around each time.
void listSort(benchmark::State &state)
{
    const auto list = shownList();
    const auto column = static_cast<tasks::SortColumn>(state.range(0));
    auto direction = tasks::SortDirection::Descending;
    measure(state, kSortLimitMs, [&] {
        direction = direction == tasks::SortDirection::Ascending ? tasks::SortDirection::Descending
                                                                 : tasks::SortDirection::Ascending;
        world().manager().sort(column, direction);
        list->refreshRows();
    });
}

/// Every second task is selected and stays so.
void listSortWithSelection(benchmark::State &state)
{
    const auto list = shownList();
    std::vector<int> rows;
    for (int row = 0; row < kTasks; row += kTasks / static_cast<int>(state.range(0))) {
        rows.push_back(row);
    }
    list->selectRows(rows);
    auto column = tasks::SortColumn::Name;
    measure(state, kSortLimitMs, [&] {
        column =
            column == tasks::SortColumn::Name ? tasks::SortColumn::Number : tasks::SortColumn::Name;
        world().manager().sort(column, tasks::SortDirection::Ascending);
        list->refreshRows();
    });
}

void listSelectAll(benchmark::State &state)
{
    const auto list = shownList();
    measure(state, kFrameLimitMs, [&list] {
        list->clearSelection();
        list->selectAll();
    });
}

constexpr auto kUnit = benchmark::kMillisecond;
BENCHMARK(listFirstPaint)->Unit(kUnit);
BENCHMARK(listRepaint)->Unit(kUnit);
BENCHMARK(plainTableRepaint)->Unit(kUnit);
BENCHMARK(listScroll)->Unit(kUnit);
BENCHMARK(plainTableScroll)->Unit(kUnit);
BENCHMARK(listRowUpdate)->Unit(kUnit);
BENCHMARK(plainTableRowUpdate)->Unit(kUnit);
BENCHMARK(listRowUpdateOutOfSight)->Unit(kUnit);
BENCHMARK(listSort)->ArgName("column")->DenseRange(0, 5)->Unit(kUnit);
BENCHMARK(listSortWithSelection)->ArgName("selected")->Arg(1'000)->Arg(10'000)->Unit(kUnit);
BENCHMARK(listSelectAll)->Unit(kUnit);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    DuiLib::CPaintManagerUI::SetInstance();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
