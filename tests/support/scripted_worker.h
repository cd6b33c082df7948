#pragma once

#include "tasks/api/task_worker.h"

#include <condition_variable>
#include <deque>
#include <mutex>

namespace tollivar::test {

/// A worker whose run does what the test says: each run waits until the test ends it, or until its
/// stop event is set, and then posts Stopped.
///
/// Threads: run() on the worker's thread; everything else belongs to the test.
class ScriptedWorker final : public tasks::TaskWorker {
public:
    void run() override;

    /// Ends the run that is under way, or the next one, with that event.
    void endWith(tasks::TaskEventCode code);
    /// Runs that have begun so far.
    [[nodiscard]] int runCount() const;
    /// If set, a stop request is not answered by the run itself: only endWith() ends it.
    void ignoreStop();
    /// If set, a run that has posted its end still lives until its stop event is set.
    void linger();

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<tasks::TaskEventCode> m_ends;
    int m_runCount = 0;
    bool m_ignoresStop = false;
    bool m_lingers = false;
};

} // namespace tollivar::test
