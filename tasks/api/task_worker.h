#pragma once

#include "platform/auto_reset_event.h"
#include "platform/message_port.h"
#include "tasks/api/task_event.h"
#include "tasks/api/task_info.h"
#include "tasks/api/task_progress.h"
#include "tasks/api/task_state.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

namespace tollivar::tasks {

/// Why a run failed. Shared with the list: never renumber.
enum class ErrorKind : std::uint32_t {
    None = 0,
    Network = 1,    ///< the request could not be opened
    NoAddress = 2,  ///< the page parser found no media
    HttpStatus = 3, ///< the server answered with another status than 200
    CannotCreateFile = 4,
};

/// What went wrong in the last run; `httpStatus` counts only for ErrorKind::HttpStatus.
struct TaskFailure {
    ErrorKind kind = ErrorKind::None;
    std::uint32_t httpStatus = 0;

    bool operator==(const TaskFailure &) const = default;
};

/// The worker of one task: what manager, list and download thread share, behind locks, and the
/// run itself, which a derived class supplies.
///
/// Threads: every function may be called from any thread. run() is called on the worker's own
///          thread, once per start; it reports through post() and ends soon after the stop event.
/// Owns:    a private copy of the record, read and written only whole.
class TaskWorker {
public:
    TaskWorker() = default;
    virtual ~TaskWorker() = default;
    TaskWorker(const TaskWorker &) = delete;
    TaskWorker &operator=(const TaskWorker &) = delete;

    /// One attempt, from the address to the file. Posts one ending event as its last.
    virtual void run() = 0;

    [[nodiscard]] TaskInfo record() const;
    void setRecord(const TaskInfo &record);

    /// Where events go; nowhere while the port is empty. The id goes into each event.
    void setOwner(const platform::AppMessagePort &owner);
    void setTaskId(std::uint32_t id);
    [[nodiscard]] std::uint32_t taskId() const;

    /// Major version of the browser engine, -1 unknown; chooses the order of the parse modes.
    void setBrowserVersion(int majorVersion);
    [[nodiscard]] int browserVersion() const;

    /// 0 on the first run, n on the n-th retry, which begins with the retry pause.
    void setRetryAttempt(int attempt);
    [[nodiscard]] int retryAttempt() const;
    void setMaximumRetries(int retries);
    [[nodiscard]] int maximumRetries() const;
    void setRetryPause(std::chrono::seconds pause);
    [[nodiscard]] std::chrono::seconds retryPause() const;

    [[nodiscard]] TaskState state() const;
    /// The state that was left last. Failed never counts as one: after a failure, and in the pause
    /// before its retry, this tells the stage at which the run failed.
    [[nodiscard]] TaskState previousState() const;
    /// For the manager: sets the state whatever it was.
    void setState(TaskState state);
    /// For the run: goes to the next stage, unless a stop or a removal was asked meanwhile.
    void enterStage(TaskState stage);

    void setFailure(const TaskFailure &failure);
    [[nodiscard]] TaskFailure failure() const;

    /// When set, posting Stopped also deletes the partly written file.
    void setDeleteOnStop(bool deleteOnStop);
    [[nodiscard]] bool deleteOnStop() const;

    void setProgress(const TaskProgress &progress);
    [[nodiscard]] TaskProgress progress() const;

    /// Set to ask the run to stop; the manager resets it before each start.
    [[nodiscard]] platform::AutoResetEvent &stopEvent() { return m_stopEvent; }

    /// Reports to the owner. Progress events replace one another while they wait.
    void post(TaskEventCode code, std::uint64_t value = 0);

private:
    /// Needs m_mutex.
    void changeState(TaskState state);

    mutable std::mutex m_recordMutex;
    TaskInfo m_record;

    mutable std::mutex m_progressMutex;
    TaskProgress m_progress;

    /// Guards everything below.
    mutable std::mutex m_mutex;
    platform::AppMessagePort m_owner;
    std::uint32_t m_taskId = 0;
    int m_browserVersion = -1;
    int m_retryAttempt = 0;
    int m_maximumRetries = 3;
    std::chrono::seconds m_retryPause{5};
    TaskState m_state = TaskState::New;
    TaskState m_previousState = TaskState::New;
    TaskFailure m_failure;
    bool m_deleteOnStop = false;

    platform::AutoResetEvent m_stopEvent;
};

/// Makes the worker of a new task; handed to the manager by the application.
using TaskWorkerFactory = std::function<std::shared_ptr<TaskWorker>()>;

} // namespace tollivar::tasks
