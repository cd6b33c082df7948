#include "tests/support/scripted_worker.h"

namespace tollivar::test {

using tasks::TaskEventCode;

void ScriptedWorker::run()
{
    {
        const std::lock_guard lock(m_mutex);
        ++m_runCount;
    }
    bool isStopped = false;
    const platform::AutoResetEvent::Watch watch(stopEvent(), [&] {
        const std::lock_guard lock(m_mutex);
        isStopped = !m_ignoresStop;
        m_changed.notify_all();
    });
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return isStopped || !m_ends.empty(); });
    TaskEventCode code = TaskEventCode::Stopped;
    if (!m_ends.empty()) {
        code = m_ends.front();
        m_ends.pop_front();
    }
    lock.unlock();
    if (code == TaskEventCode::Completed) {
        tasks::TaskInfo task = record();
        task.nCompletedStatus = 1;
        setRecord(task);
    }
    post(code);
    lock.lock();
    m_changed.wait(lock, [&] { return isStopped || !m_lingers; });
}

void ScriptedWorker::endWith(TaskEventCode code)
{
    const std::lock_guard lock(m_mutex);
    m_ends.push_back(code);
    m_changed.notify_all();
}

int ScriptedWorker::runCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_runCount;
}

void ScriptedWorker::ignoreStop()
{
    const std::lock_guard lock(m_mutex);
    m_ignoresStop = true;
}

void ScriptedWorker::linger()
{
    const std::lock_guard lock(m_mutex);
    m_lingers = true;
}

} // namespace tollivar::test
