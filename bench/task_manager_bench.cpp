// The task manager with many tasks: what adding, filtering, starting, and one event cost when 1,000,
// 10,000 and 100,000 tasks are there. Workers finish at once; their threads, their messages and the
// database are real. The figure that matters is the time per task or event: it must not grow.

#include "tasks/task_manager.h"
#include "tasks/task_recorder.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <vector>

namespace {

using namespace Qt::StringLiterals;
using namespace tollivar;
using namespace tollivar::tasks;
using Clock = std::chrono::steady_clock;

/// Reports what a whole download reports, without the download.
class InstantWorker final : public TaskWorker {
public:
    void run() override
    {
        TaskInfo task = record();
        task.nCompletedStatus = 1;
        task.dwDownloadSize = task.dwSize;
        setRecord(task);
        enterStage(TaskState::Downloading);
        post(TaskEventCode::DownloadStarted);
        post(TaskEventCode::SizeKnown, task.dwSize);
        post(TaskEventCode::FileCreated);
        post(TaskEventCode::Completed);
    }
};

TaskInfo ordinaryTask(int number)
{
    TaskInfo task;
    task.strOriURL = u"https://videos.example/watch?v=%1"_s.arg(number);
    task.strOutputName = u"Somebody's clip number %1"_s.arg(number);
    task.dwSize = 50'000'000;
    return task;
}

/// The times that single operations took; a mean would hide the dear ones.
class Latencies {
public:
    template<typename Operation>
    void measure(Operation operation)
    {
        const auto begin = Clock::now();
        operation();
        m_microseconds.push_back(
            std::chrono::duration<double, std::micro>(Clock::now() - begin).count());
    }

    [[nodiscard]] double at(std::size_t percent)
    {
        const std::size_t place = (m_microseconds.size() - 1) * percent / 100;
        std::ranges::nth_element(m_microseconds,
                                 m_microseconds.begin() + static_cast<std::ptrdiff_t>(place));
        return m_microseconds.at(place);
    }

private:
    std::vector<double> m_microseconds;
};

/// A manager on its database, with the time that each event took.
class House {
public:
    House()
        : m_database(*TaskDatabase::open(m_directory.filePath(u"dtasks.db"_s),
                                         m_directory.filePath(u"dtasks.ini"_s), {}))
        , m_inbox([this](const auto &message) { take(message); })
        , m_manager(*m_database, [] { return std::make_shared<InstantWorker>(); }, m_inbox.port(),
                    {})
        , m_recorder(m_manager, *m_database, platform::systemClock())
    {
    }

    [[nodiscard]] TaskManager &manager() { return m_manager; }

    void add(int count)
    {
        m_database->inTransaction([this, count] {
            for (int number = 0; number < count; ++number) {
                m_manager.addTask(ordinaryTask(number), TaskOrigin::New);
            }
        });
    }

    /// Runs every task to its end. One transaction, or the disk would be all that is measured.
    void finishAll(int count)
    {
        m_database->inTransaction([this, count] {
            for (int row = 0; row < count; ++row) {
                m_manager.startTask(row, Placement::Keep);
            }
            while (m_manager.completedCount() < count) {
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            }
        });
    }

    void reportEvents(benchmark::State &state)
    {
        state.counters["manager_p50_us"] = m_managing.at(50);
        state.counters["manager_p99_us"] = m_managing.at(99);
        state.counters["recorder_p50_us"] = m_recording.at(50);
        state.counters["recorder_p99_us"] = m_recording.at(99);
    }

private:
    void take(const platform::AppMessage &message)
    {
        auto outcome = EventOutcome::Ignore;
        m_managing.measure([&] { outcome = m_manager.onTaskEvent(message.first, message.second); });
        if (outcome == EventOutcome::FollowUp) {
            m_recording.measure([&] { m_recorder.record(message.first, message.second); });
        }
    }

    QTemporaryDir m_directory;
    std::unique_ptr<TaskDatabase> m_database;
    platform::AppMessageInbox m_inbox;
    TaskManager m_manager;
    TaskRecorder m_recorder;
    Latencies m_managing;
    Latencies m_recording;
};

/// Times one piece of work and gives it per task.
template<typename Work>
void measure(benchmark::State &state, Work work)
{
    const auto begin = Clock::now();
    work();
    const std::chrono::duration<double> took = Clock::now() - begin;
    state.SetIterationTime(took.count());
    state.counters["per_task_us"] = took.count() * 1e6 / static_cast<double>(state.range(0));
}

int countOf(const benchmark::State &state)
{
    return static_cast<int>(state.range(0));
}

void addTasks(benchmark::State &state)
{
    for ([[maybe_unused]] auto round : state) {
        House house;
        house.manager().setFilter(TaskFilter::All);
        measure(state, [&] { house.add(countOf(state)); });
    }
}

void filterTasks(benchmark::State &state)
{
    House house;
    house.add(countOf(state));
    for ([[maybe_unused]] auto round : state) {
        house.manager().setFilter(TaskFilter::All);
        measure(state, [&] { house.manager().setFilter(TaskFilter::Downloading); });
    }
}

/// With the filter whose rows do not change, and with the one that every finished task leaves.
void runTasks(benchmark::State &state, TaskFilter filter)
{
    for ([[maybe_unused]] auto round : state) {
        House house;
        house.add(countOf(state));
        house.manager().setFilter(filter);
        measure(state, [&] { house.finishAll(countOf(state)); });
        house.reportEvents(state);
    }
}

constexpr int kFew = 1'000;
constexpr int kMany = 100'000;
constexpr int kTimesTen = 10;

BENCHMARK(addTasks)->RangeMultiplier(kTimesTen)->Range(kFew, kMany)->UseManualTime()->Iterations(1);
BENCHMARK(filterTasks)->RangeMultiplier(kTimesTen)->Range(kFew, kMany)->UseManualTime();
BENCHMARK_CAPTURE(runTasks, shownAll, TaskFilter::All)
    ->RangeMultiplier(kTimesTen)
    ->Range(kFew, kMany)
    ->UseManualTime()
    ->Iterations(1);
BENCHMARK_CAPTURE(runTasks, shownDownloading, TaskFilter::Downloading)
    ->RangeMultiplier(kTimesTen)
    ->Range(kFew, kMany)
    ->UseManualTime()
    ->Iterations(1);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
