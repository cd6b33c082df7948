#include "tasks/api/task_worker.h"

#include <QFile>

namespace tollivar::tasks {

namespace {

/// Removes what a run has written; a file that no run has made belongs to somebody else.
void deleteWrittenFile(const TaskInfo &record)
{
    if (record.bFileCreated != 0) {
        QFile::remove(record.outputPath());
    }
}

platform::Delivery deliveryOf(TaskEventCode code)
{
    const bool isProgress =
        code == TaskEventCode::Progress || code == TaskEventCode::ProgressUnknownSize;
    return isProgress ? platform::Delivery::NewestWins : platform::Delivery::Each;
}

bool stopWasAsked(TaskState state)
{
    return state == TaskState::Stopping || state == TaskState::StoppingToRestart ||
           state == TaskState::Removed;
}

} // namespace

TaskInfo TaskWorker::record() const
{
    const std::lock_guard lock(m_recordMutex);
    return m_record;
}

void TaskWorker::setRecord(const TaskInfo &record)
{
    const std::lock_guard lock(m_recordMutex);
    m_record = record;
}

void TaskWorker::setOwner(const platform::AppMessagePort &owner)
{
    const std::lock_guard lock(m_mutex);
    m_owner = owner;
}

void TaskWorker::setTaskId(std::uint32_t id)
{
    const std::lock_guard lock(m_mutex);
    m_taskId = id;
}

std::uint32_t TaskWorker::taskId() const
{
    const std::lock_guard lock(m_mutex);
    return m_taskId;
}

void TaskWorker::setBrowserVersion(int majorVersion)
{
    const std::lock_guard lock(m_mutex);
    m_browserVersion = majorVersion;
}

int TaskWorker::browserVersion() const
{
    const std::lock_guard lock(m_mutex);
    return m_browserVersion;
}

void TaskWorker::setRetryAttempt(int attempt)
{
    const std::lock_guard lock(m_mutex);
    m_retryAttempt = attempt;
}

int TaskWorker::retryAttempt() const
{
    const std::lock_guard lock(m_mutex);
    return m_retryAttempt;
}

void TaskWorker::setMaximumRetries(int retries)
{
    const std::lock_guard lock(m_mutex);
    m_maximumRetries = retries;
}

int TaskWorker::maximumRetries() const
{
    const std::lock_guard lock(m_mutex);
    return m_maximumRetries;
}

void TaskWorker::setRetryPause(std::chrono::seconds pause)
{
    const std::lock_guard lock(m_mutex);
    m_retryPause = pause;
}

std::chrono::seconds TaskWorker::retryPause() const
{
    const std::lock_guard lock(m_mutex);
    return m_retryPause;
}

TaskState TaskWorker::state() const
{
    const std::lock_guard lock(m_mutex);
    return m_state;
}

TaskState TaskWorker::previousState() const
{
    const std::lock_guard lock(m_mutex);
    return m_previousState;
}

void TaskWorker::setState(TaskState state)
{
    const std::lock_guard lock(m_mutex);
    changeState(state);
}

void TaskWorker::enterStage(TaskState stage)
{
    const std::lock_guard lock(m_mutex);
    if (stopWasAsked(m_state)) {
        return;
    }
    changeState(stage);
}

void TaskWorker::changeState(TaskState state)
{
    if (m_state != TaskState::Failed) {
        m_previousState = m_state;
    }
    m_state = state;
}

void TaskWorker::setFailure(const TaskFailure &failure)
{
    const std::lock_guard lock(m_mutex);
    m_failure = failure;
}

TaskFailure TaskWorker::failure() const
{
    const std::lock_guard lock(m_mutex);
    return m_failure;
}

void TaskWorker::setDeleteOnStop(bool deleteOnStop)
{
    const std::lock_guard lock(m_mutex);
    m_deleteOnStop = deleteOnStop;
}

bool TaskWorker::deleteOnStop() const
{
    const std::lock_guard lock(m_mutex);
    return m_deleteOnStop;
}

void TaskWorker::setProgress(const TaskProgress &progress)
{
    const std::lock_guard lock(m_progressMutex);
    m_progress = progress;
}

TaskProgress TaskWorker::progress() const
{
    const std::lock_guard lock(m_progressMutex);
    return m_progress;
}

void TaskWorker::post(TaskEventCode code, std::uint64_t value)
{
    // Whoever receives Stopped may take the file for gone, so it goes first.
    if (code == TaskEventCode::Stopped && deleteOnStop()) {
        deleteWrittenFile(record());
    }

    platform::AppMessagePort owner;
    std::uint32_t id = 0;
    {
        const std::lock_guard lock(m_mutex);
        owner = m_owner;
        id = m_taskId;
    }
    owner.post(platform::AppMessageId::TaskEvent, packTaskEvent(id, code), value, deliveryOf(code));
}

} // namespace tollivar::tasks
