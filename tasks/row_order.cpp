#include "tasks/row_order.h"

#include "tasks/api/download_mode.h"

#include <algorithm>
#include <numeric>

namespace tollivar::tasks {

namespace {

bool isTextColumn(SortColumn column)
{
    return column == SortColumn::Name || column == SortColumn::Type;
}

/// The states as a person looks for them: what runs, what waits, what failed, what rests, what is
/// done.
double statusRank(TaskState state)
{
    switch (state) {
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
        return 6;
    case TaskState::Completed:
        return 7;
    }
    return 6;
}

} // namespace

RowKey rowKey(const TaskWorker &worker, SortColumn column)
{
    switch (column) {
    case SortColumn::Number:
        return {{}, static_cast<double>(worker.taskId())};
    case SortColumn::Name:
        // Folded once: comparing without regard to case would fold at every comparison.
        return {worker.record().strOutputName.toCaseFolded(), 0};
    case SortColumn::Status:
        return {{}, statusRank(worker.state())};
    case SortColumn::Speed:
        return {{},
                worker.state() == TaskState::Downloading ? worker.progress().bytesPerSecond : -1};
    case SortColumn::Type:
        return {worker.record().strFileType.toCaseFolded(), 0};
    case SortColumn::Mode: {
        const TaskInfo record = worker.record();
        return {{}, static_cast<double>(packDownloadMode({record.nModeLow, record.nModeHigh}))};
    }
    }
    return {};
}

std::vector<std::size_t> sortedPlaces(const std::vector<RowKey> &keys, SortColumn column,
                                      SortDirection direction)
{
    std::vector<std::size_t> places(keys.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    const bool isText = isTextColumn(column);
    const auto isBefore = [&keys, isText](std::size_t left, std::size_t right) {
        return isText ? keys[left].text < keys[right].text : keys[left].number < keys[right].number;
    };
    if (direction == SortDirection::Ascending) {
        std::stable_sort(places.begin(), places.end(), isBefore);
    } else if (direction == SortDirection::Descending) {
        std::stable_sort(
            places.begin(), places.end(),
            [&isBefore](std::size_t left, std::size_t right) { return isBefore(right, left); });
    }
    return places;
}

} // namespace tollivar::tasks
