#include "tasks/task_manager.h"

#include "platform/thread_role.h"
#include "platform/worker_thread.h"
#include "tasks/api/download_mode.h"

#include <QFile>

namespace tollivar::tasks {

namespace {

/// Threads that are waited for together at the end, and how long.
constexpr std::size_t kWaitBatch = 64;
constexpr std::chrono::milliseconds kWaitLimit{7'000};

bool isStopping(TaskState state)
{
    return state == TaskState::Stopping || state == TaskState::StoppingToRestart;
}

/// True from the start of a run until the manager has heard how it ended.
bool hasRun(TaskState state)
{
    return isRunning(state) || isStopping(state);
}

/// The downloaded file, and only one that this task made.
void deleteFileOf(const TaskInfo &record)
{
    if (record.bFileCreated != 0) {
        QFile::remove(record.outputPath());
    }
}

} // namespace

TaskManager::TaskManager(TaskDatabase &database, TaskWorkerFactory factory,
                         platform::AppMessagePort events, const TaskManagerOptions &options)
    : m_database(database)
    , m_factory(std::move(factory))
    , m_events(std::move(events))
    , m_options(options)
    , m_slots(options.maximumDownloads)
{
}

TaskManager::~TaskManager()
{
    shutDown();
}

std::uint32_t TaskManager::addTask(const TaskInfo &record, TaskOrigin origin, RowId row)
{
    platform::mainThread.assertHeld();
    const std::uint32_t id = m_nextId++;
    auto task = std::make_shared<Task>();
    task->worker = m_factory();
    TaskWorker &worker = *task->worker;
    worker.setTaskId(id);
    worker.setRecord(record);
    worker.setBrowserVersion(m_options.browserVersion);
    worker.setMaximumRetries(m_options.retry.maximumRetries);
    if (record.nCompletedStatus != 0) {
        setState(worker, TaskState::Completed);
        ++m_completedCount;
    }
    task->storedRow = origin == TaskOrigin::New ? m_database.InsertTask(record) : row;
    worker.setOwner(m_events);
    // A completed task added while all are shown waits for the next rebuild of the list.
    const bool waitsForRebuild = m_filter == TaskFilter::All && record.nCompletedStatus != 0;
    const bool isShownNow = isShown(*task) && !waitsForRebuild;
    if (isShownNow) {
        m_rows.append(task);
    }
    m_tasks.emplace(id, std::move(task));
    if (isShownNow) {
        rowsChanged();
    }
    return id;
}

bool TaskManager::isShown(const Task &task) const
{
    switch (m_filter) {
    case TaskFilter::None:
        return false;
    case TaskFilter::All:
        return true;
    case TaskFilter::Downloaded:
        return task.worker->record().nCompletedStatus != 0;
    case TaskFilter::Downloading:
        return task.worker->record().nCompletedStatus == 0;
    }
    return false;
}

void TaskManager::setFilter(TaskFilter filter)
{
    if (filter == m_filter) {
        return;
    }
    m_filter = filter;
    m_rows.clear();
    for (const auto &[id, task] : m_tasks) {
        if (isShown(*task)) {
            m_rows.append(task);
        }
    }
    rowsChanged();
}

void TaskManager::sort(SortColumn column, SortDirection direction)
{
    m_rows.sort({.column = column, .direction = direction});
    rowsChanged();
}

void TaskManager::rowsChanged() const
{
    if (m_rowsChanged) {
        m_rowsChanged();
    }
}

void TaskManager::setState(TaskWorker &worker, TaskState state)
{
    m_waitingCount -= worker.state() == TaskState::Waiting ? 1 : 0;
    m_waitingCount += state == TaskState::Waiting ? 1 : 0;
    worker.setState(state);
}

StartOutcome TaskManager::startTask(int row, Placement placement)
{
    return startTask(findAt(row), placement);
}

StartOutcome TaskManager::start(std::uint32_t id)
{
    return startTask(find(id), Placement::Keep);
}

StartOutcome TaskManager::startTask(const std::shared_ptr<Task> &task, Placement placement)
{
    if (!task) {
        return StartOutcome::NotStarted;
    }
    TaskWorker &worker = *task->worker;
    TaskInfo record = worker.record();
    record.nCompletedStatus = 0;
    record.bFileCreated = 0;
    worker.setRecord(record);
    worker.setRetryAttempt(0);
    if (worker.state() == TaskState::Completed) {
        reopenCompleted(*task);
    }
    if (placement == Placement::MoveToEnd) {
        moveToEnd(task);
    }
    const auto [next, action] =
        nextState(worker.state(),
                  m_slots.hasFreeSlot() ? TaskInput::StartWithSlot : TaskInput::StartWithoutSlot);
    switch (action) {
    case TaskAction::Launch:
        launch(task);
        return StartOutcome::Started;
    case TaskAction::Enqueue:
        setState(worker, next);
        m_slots.enqueue(worker.taskId());
        return StartOutcome::Queued;
    case TaskAction::None:
    case TaskAction::SignalStop:
        break;
    }
    if (worker.state() != TaskState::Stopping) {
        return StartOutcome::NotStarted;
    }
    setState(worker, next);
    return StartOutcome::WillRestart;
}

void TaskManager::reopenCompleted(const Task &task)
{
    --m_completedCount;
    // Both at once, so that a crash in the middle of the new run leaves no false "completed".
    m_database.inTransaction([&] {
        m_database.UpdateInt(task.storedRow, NumberColumn::FileCreated, 0);
        m_database.UpdateInt(task.storedRow, NumberColumn::CompletedStatus, 0);
    });
}

void TaskManager::moveToEnd(const std::shared_ptr<Task> &task)
{
    m_rows.remove(*task);
    m_tasks.erase(task->worker->taskId());
    const std::uint32_t id = m_nextId++;
    task->worker->setTaskId(id);
    m_tasks.emplace(id, task);
    rowsChanged();
}

void TaskManager::launch(const std::shared_ptr<Task> &task)
{
    m_slots.take();
    setState(*task->worker, TaskState::Started);
    ++task->threadCount;
    task->worker->stopEvent().reset();
    auto thread =
        std::make_unique<platform::WorkerThread>([worker = task->worker] { worker->run(); });
    if (!thread->resume()) {
        // Else no end would ever be told, and the slot would be lost.
        task->worker->post(TaskEventCode::DownloadFailed);
    }
    task->latestThread = thread.get();
    m_runs.push_back({std::move(thread), task});
}

StopOutcome TaskManager::stopTask(int row)
{
    const auto task = findAt(row);
    if (!task) {
        return StopOutcome::Nothing;
    }
    TaskWorker &worker = *task->worker;
    const TaskState state = worker.state();
    const auto [next, action] = nextState(state, TaskInput::Stop);
    if (next == state) {
        return StopOutcome::Nothing;
    }
    setState(worker, next);
    if (action == TaskAction::SignalStop) {
        worker.stopEvent().set();
    }
    return next == TaskState::Stopped ? StopOutcome::Stopped : StopOutcome::Asked;
}

void TaskManager::removeTask(int row, FileOnRemoval file)
{
    removeTasks(std::vector{row}, file);
}

void TaskManager::removeTasks(const std::vector<int> &rows, FileOnRemoval file)
{
    reapEndedThreads(); // A task whose run has ended is idle, whether or not another event came.
    std::vector<std::shared_ptr<Task>> leaving;
    std::vector<std::shared_ptr<Task>> idle;
    leaving.reserve(rows.size());
    for (const int row : rows) {
        const auto task = findAt(row);
        if (!task || task->worker->state() == TaskState::Removed) {
            continue;
        }
        // The last thread of a running one takes its worker along; the stored row stays. A thread
        // that has told how its run ended touches neither row nor file any more.
        if (task->threadCount == 0 || !hasRun(task->worker->state())) {
            idle.push_back(task);
        }
        takeOut(*task, file);
        leaving.push_back(task);
    }
    if (leaving.empty()) {
        return;
    }
    m_rows.remove(leaving);
    if (file == FileOnRemoval::Delete) {
        for (const auto &task : idle) {
            deleteFileOf(task->worker->record());
        }
    }
    m_database.inTransaction([&] {
        for (const auto &task : idle) {
            m_database.DeleteTask(task->storedRow);
        }
    });
    rowsChanged();
}

void TaskManager::takeOut(Task &task, FileOnRemoval file)
{
    TaskWorker &worker = *task.worker;
    if (worker.state() == TaskState::Completed) {
        --m_completedCount;
    }
    worker.setDeleteOnStop(file == FileOnRemoval::Delete);
    setState(worker, TaskState::Removed);
    worker.stopEvent().set();
    m_tasks.erase(worker.taskId());
}

EventOutcome TaskManager::onTaskEvent(std::uint64_t first, std::uint64_t /*second*/)
{
    platform::mainThread.assertHeld();
    reapEndedThreads();
    const TaskEventCode code = eventCodeOf(first);
    auto outcome = EventOutcome::FollowUp;
    if (const auto task = find(taskIdOf(first))) {
        if (isStopping(task->worker->state())) {
            outcome = EventOutcome::Ignore;
        }
        if (endsRun(code)) {
            applyEnd(task, code);
        }
    }
    if (endsRun(code)) {
        m_slots.release();
        dispatch();
    }
    return outcome;
}

void TaskManager::applyEnd(const std::shared_ptr<Task> &task, TaskEventCode code)
{
    TaskWorker &worker = *task->worker;
    const bool hasFailed =
        code == TaskEventCode::ParseFailed || code == TaskEventCode::DownloadFailed;
    const int attempt = worker.retryAttempt() + 1;
    auto input = TaskInput::RunStopped;
    if (code == TaskEventCode::Completed) {
        input = TaskInput::RunCompleted;
    } else if (hasFailed) {
        input = m_options.retry.runsAgain(attempt) ? TaskInput::RunFailedRetry
                                                   : TaskInput::RunFailedFinally;
    }
    const TaskState state = worker.state();
    const auto [next, action] = nextState(state, input);
    if (next == TaskState::Completed && state != next) {
        complete(task);
    } else if (hasFailed && isRunning(state)) {
        setState(worker, TaskState::Failed);
        worker.setRetryAttempt(attempt);
        if (action == TaskAction::Launch) {
            retry(task, attempt);
        }
    } else if (next != state) {
        setState(worker, next);
    }
    if (action == TaskAction::Enqueue) {
        m_slots.enqueue(worker.taskId());
    }
}

void TaskManager::complete(const std::shared_ptr<Task> &task)
{
    setState(*task->worker, TaskState::Completed);
    ++m_completedCount;
    if (m_filter == TaskFilter::Downloading) {
        m_rows.remove(*task);
    } else if (m_filter == TaskFilter::Downloaded && task->row < 0) {
        m_rows.append(task);
    } else {
        return;
    }
    rowsChanged();
}

void TaskManager::retry(const std::shared_ptr<Task> &task, int attempt)
{
    TaskWorker &worker = *task->worker;
    TaskInfo record = worker.record();
    const int method = m_options.retry.methodOfRetry(record, attempt);
    if (method != record.nModeLow) {
        record.nModeLow = method;
        m_database.UpdateInt(task->storedRow, NumberColumn::DownloadMode,
                             packDownloadMode({.low = record.nModeLow, .high = record.nModeHigh}));
        worker.setRecord(record);
    }
    launch(task);
}

void TaskManager::dispatch()
{
    if (!m_slots.hasFreeSlot()) {
        return;
    }
    const auto id = m_slots.takeFirst([this](std::uint32_t candidate) {
        const auto task = find(candidate);
        return task && task->worker->state() == TaskState::Waiting;
    });
    if (id) {
        launch(find(*id));
    }
}

void TaskManager::setMaximumDownloads(int maximum)
{
    m_slots.setMaximum(maximum);
    dispatch();
}

void TaskManager::setRetryPolicy(const RetryPolicy &policy)
{
    m_options.retry = policy;
    for (const auto &[id, task] : m_tasks) {
        task->worker->setMaximumRetries(policy.maximumRetries);
    }
}

void TaskManager::reapEndedThreads()
{
    for (auto run = m_runs.begin(); run != m_runs.end();) {
        if (run->thread->hasEnded()) {
            --run->task->threadCount;
            run = m_runs.erase(run);
        } else {
            ++run;
        }
    }
}

void TaskManager::shutDown()
{
    for (const Run &run : m_runs) {
        run.task->worker->stopEvent().set();
    }
    using Clock = std::chrono::steady_clock;
    std::size_t waited = 0;
    auto deadline = Clock::now() + kWaitLimit;
    for (const Run &run : m_runs) {
        if (waited++ % kWaitBatch == 0) {
            deadline = Clock::now() + kWaitLimit;
        }
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        // A thread that does not end is let go; it keeps its worker alive by itself.
        static_cast<void>(run.thread->waitForEnd(std::max(left, std::chrono::milliseconds(0))));
    }
    m_rows.clear();
    m_tasks.clear();
    m_runs.clear();
    m_waitingCount = 0;
    m_completedCount = 0;
}

std::shared_ptr<TaskManager::Task> TaskManager::find(std::uint32_t id) const
{
    const auto place = m_tasks.find(id);
    return place == m_tasks.end() ? nullptr : place->second;
}

std::shared_ptr<TaskManager::Task> TaskManager::findAt(int row) const
{
    return m_rows.at(row);
}

TaskWorker *TaskManager::workerAt(int row) const
{
    const auto task = findAt(row);
    return task ? task->worker.get() : nullptr;
}

TaskWorker *TaskManager::worker(std::uint32_t id) const
{
    const auto task = find(id);
    return task ? task->worker.get() : nullptr;
}

int TaskManager::rowOf(std::uint32_t id) const
{
    const auto task = find(id);
    return task ? task->row : -1;
}

RowId TaskManager::storedRowOf(std::uint32_t id) const
{
    const auto task = find(id);
    return task ? task->storedRow : 0;
}

int TaskManager::visibleCount() const
{
    return m_rows.count();
}

int TaskManager::unfinishedCount() const
{
    return static_cast<int>(m_tasks.size()) - m_completedCount;
}

std::vector<TaskProgress> TaskManager::downloads() const
{
    std::vector<TaskProgress> found;
    for (const Run &run : m_runs) {
        const TaskWorker &worker = *run.task->worker;
        // A retry may begin before the thread of the failed run is reaped.
        const bool isLatest = run.task->latestThread == run.thread.get();
        if (isLatest && worker.state() == TaskState::Downloading) {
            found.push_back(worker.progress());
        }
    }
    return found;
}

double TaskManager::totalSpeed() const
{
    double sum = 0;
    for (const TaskProgress &progress : downloads()) {
        sum += progress.bytesPerSecond;
    }
    return sum;
}

double TaskManager::totalReached() const
{
    constexpr double kWhole = 10'000;
    double sum = 0;
    for (const TaskProgress &progress : downloads()) {
        sum += std::clamp(double{progress.percentHundredths} / kWhole, 0.0, 1.0);
    }
    return sum;
}

bool TaskManager::isCompletedAt(int row) const
{
    const auto task = findAt(row);
    return task && task->worker->state() == TaskState::Completed;
}

std::vector<std::uint32_t> TaskManager::allTasks() const
{
    std::vector<std::uint32_t> ids;
    ids.reserve(m_tasks.size());
    for (const auto &[id, task] : m_tasks) {
        ids.push_back(id);
    }
    return ids;
}

void TaskManager::updateText(std::uint32_t id, TextColumn column, const QString &value)
{
    if (const auto task = find(id)) {
        m_database.UpdateText(task->storedRow, column, value);
    }
}

void TaskManager::updateNumber(std::uint32_t id, NumberColumn column, std::int32_t value,
                               Durability durability)
{
    if (const auto task = find(id)) {
        m_database.UpdateInt(task->storedRow, column, value, durability);
    }
}

void TaskManager::onRowsChanged(std::function<void()> handler)
{
    m_rowsChanged = std::move(handler);
}

} // namespace tollivar::tasks
