#pragma once

#include "fetch/step_result.h"
#include "platform/clock.h"
#include "tasks/api/task_worker.h"

namespace tollivar::fetch {

/// The worker of one download: pause, page, title, download, one event for each change.
///
/// Threads: run() on the worker's own thread; the rest as TaskWorker says.
/// Owns:    during run(): the parser's process, the connection, the output file.
class FetchWorker final : public tasks::TaskWorker {
public:
    /// The clock is borrowed and must outlive the worker.
    explicit FetchWorker(const platform::Clock &clock = platform::systemClock());

    /// Always posts an ending event, also when something escapes as an exception.
    void run() override;

private:
    [[nodiscard]] tasks::TaskEventCode runSteps();
    [[nodiscard]] StepResult waitRetryPause();
    [[nodiscard]] StepResult resolve(tasks::TaskInfo &task);
    [[nodiscard]] StepResult takeTitle(tasks::TaskInfo &task);
    [[nodiscard]] StepResult download(tasks::TaskInfo &task);

    const platform::Clock &m_clock;
};

} // namespace tollivar::fetch
