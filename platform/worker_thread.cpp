#include "platform/worker_thread.h"

#include <QtGlobal>

#include <condition_variable>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

namespace tollivar::platform {

struct WorkerThread::State {
    std::mutex mutex;
    std::condition_variable changed;
    bool hasEnded = false;

    void end()
    {
        const std::lock_guard lock(mutex);
        hasEnded = true;
        changed.notify_all();
    }
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

bool WorkerThread::resume()
{
    Q_ASSERT(m_function);
    auto body = [function = std::exchange(m_function, nullptr), state = m_state]() mutable {
        runCaught(function);
        // What the function captured goes before the end is told: whoever waits for the end may
        // rely on it.
        function = nullptr;
        state->end();
    };
    try {
        std::thread(std::move(body)).detach();
        return true;
    } catch (const std::system_error &error) {
        qWarning("a worker thread could not be started: %s", error.what());
        m_state->end();
        return false;
    }
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
