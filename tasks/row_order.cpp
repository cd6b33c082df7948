#include "tasks/row_order.h"

#include "tasks/api/task_worker.h"

#include <QCollator>
#include <QLocale>

namespace tollivar::tasks {

namespace {

using Tasks = std::vector<std::shared_ptr<ManagedTask>>;

/// A person finds what moves first and what is done last.
int statusRank(const TaskWorker &worker)
{
    switch (worker.state()) {
    case TaskState::Downloading:
        return 0;
    case TaskState::TakingTitle:
        return 1;
    case TaskState::ResolvingPage:
        return 2;
    case TaskState::Started:
        return 3;
    case TaskState::Waiting:
    case TaskState::StoppingToRestart:
        return 4;
    case TaskState::Failed:
        return 5;
    case TaskState::New:
    case TaskState::Stopped:
    case TaskState::Stopping:
    case TaskState::Removed:
        return worker.record().isFileComplete() ? 7 : 6;
    case TaskState::Completed:
        return 7;
    }
    return 7;
}

/// Ascending, the nearest to its end comes first.
double statusValue(const TaskWorker &worker)
{
    constexpr double kWhole = 10'000;
    const int rank = statusRank(worker);
    return rank == 0 ? -double{worker.progress().percentHundredths} / (2 * kWhole) : rank;
}

double numberOf(const TaskWorker &worker, SortColumn column)
{
    switch (column) {
    case SortColumn::Number:
        return worker.taskId();
    case SortColumn::Status:
        return statusValue(worker);
    case SortColumn::Speed:
        // Below a stalled download stands what does not download at all.
        return worker.state() == TaskState::Downloading ? worker.progress().bytesPerSecond : -1;
    case SortColumn::Mode: {
        const TaskInfo record = worker.record();
        return double{1'000} * record.nModeLow + record.nModeHigh;
    }
    case SortColumn::Name:
    case SortColumn::Type:
        break;
    }
    return 0;
}

QCollator collator()
{
    const QLocale system;
    // The "C" locale knows only the order of code points.
    QCollator rules(system.language() == QLocale::C ? QLocale(QLocale::English) : system);
    rules.setCaseSensitivity(Qt::CaseInsensitive);
    rules.setNumericMode(true);
    return rules;
}

template<typename Key>
void sortByKeys(Tasks &tasks, const std::vector<Key> &keys, SortDirection direction)
{
    std::vector<std::size_t> places(tasks.size());
    for (std::size_t i = 0; i < places.size(); ++i) {
        places[i] = i;
    }
    const auto isBefore = [&keys, direction](std::size_t left, std::size_t right) {
        return direction == SortDirection::Ascending ? keys[left] < keys[right]
                                                     : keys[right] < keys[left];
    };
    std::ranges::stable_sort(places, isBefore);
    Tasks sorted;
    sorted.reserve(tasks.size());
    for (const std::size_t place : places) {
        sorted.push_back(std::move(tasks[place]));
    }
    tasks = std::move(sorted);
}

} // namespace

void sortTasks(Tasks &tasks, TaskOrder order)
{
    if (order.direction == SortDirection::None) {
        return;
    }
    if (order.column == SortColumn::Name || order.column == SortColumn::Type) {
        const QCollator rules = collator();
        std::vector<QCollatorSortKey> keys;
        keys.reserve(tasks.size());
        for (const auto &task : tasks) {
            const TaskInfo record = task->worker->record();
            keys.push_back(rules.sortKey(order.column == SortColumn::Name ? record.strOutputName
                                                                          : record.strFileType));
        }
        sortByKeys(tasks, keys, order.direction);
        return;
    }
    std::vector<double> keys;
    keys.reserve(tasks.size());
    for (const auto &task : tasks) {
        keys.push_back(numberOf(*task->worker, order.column));
    }
    sortByKeys(tasks, keys, order.direction);
}

} // namespace tollivar::tasks
