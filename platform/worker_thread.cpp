#include "platform/worker_thread.h"

#include <QtGlobal>

#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

namespace tollivar::platform {

struct WorkerThread::State {
    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    bool hasEnded = false;
};

namespace {

void runCaught(const std::function<void()> &function)
{
    try {
        function();
    } catch (const std::exception &error) {
        qWarning("a worker thread ended by an exception: %s", error.what());
    } catch (...) {
        qWarning("a worker thread ended by an unknown exception");
    }
}

} // namespace

WorkerThread::WorkerThread(std::function<void()> function)
    : m_function(std::move(function))
    , m_state(std::make_shared<State>())
{
}

WorkerThread::~WorkerThread() = default;

void WorkerThread::resume()
{
    std::thread([function = std::move(m_function), state = m_state]() mutable {
        runCaught(function);
        // What the function captured goes before the end is told: whoever waits for the end may
        // rely on it.
        function = nullptr;
        const std::lock_guard lock(state->mutex);
        state->hasEnded = true;
        state->changed.notify_all();
    }).detach();
}

bool WorkerThread::hasEnded() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->hasEnded;
}

bool WorkerThread::waitForEnd(std::chrono::milliseconds limit) const
{
    std::unique_lock lock(m_state->mutex);
    return m_state->changed.wait_for(lock, limit, [this] { return m_state->hasEnded; });
}

} // namespace tollivar::platform
