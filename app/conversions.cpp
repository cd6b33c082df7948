#include "app/conversions.h"

#include "convert/conversion_run.h"

#include <algorithm>
#include <thread>

namespace tollivar::app {

using convert::ConversionEnd;
using convert::ConversionResult;
using platform::AppMessageId;

namespace {

/// What a conversion's thread tells, as the message's second value.
constexpr std::uint64_t kProgressed = 0;
constexpr std::uint64_t kEnded = 1;

std::size_t mostAtOnce()
{
    return std::max(1U, std::thread::hardware_concurrency() / 2);
}

} // namespace

/// Shared with its thread.
struct Conversions::Run {
    tasks::TaskInfo task;
    platform::AutoResetEvent stop;
    bool isStopping = false;
    std::atomic<int> percent = 0;
    /// Written by the thread before it tells its end.
    ConversionResult result;
    std::unique_ptr<platform::WorkerThread> thread;
};

Conversions::Conversions(std::function<void(std::uint32_t)> onChange)
    : m_onChange(std::move(onChange))
    , m_inbox([this](const platform::AppMessage &message) { take(message); })
{
}

Conversions::~Conversions()
{
    stopAll();
}

void Conversions::stopAll()
{
    m_waiting.clear();
    constexpr std::chrono::seconds kPatience{7};
    for (const auto &[id, run] : m_runs) {
        run->stop.set();
    }
    for (const auto &[id, run] : m_runs) {
        if (!run->thread->waitForEnd(kPatience)) {
            qWarning("a conversion does not end");
        }
    }
    m_runs.clear();
}

void Conversions::start(std::uint32_t taskId, const tasks::TaskInfo &task)
{
    const auto run = m_runs.find(taskId);
    const bool isEnding = run != m_runs.end() && run->second->isStopping;
    if (waits(taskId) || (percent(taskId) && !isEnding)) {
        return;
    }
    m_failures.erase(taskId);
    m_waiting.emplace_back(taskId, task);
    beginWaiting();
    m_onChange(taskId);
}

void Conversions::beginWaiting()
{
    while (m_runs.size() < mostAtOnce()) {
        // A task whose stopped run has not ended yet lets others go first.
        const auto next =
            std::find_if(m_waiting.begin(), m_waiting.end(),
                         [this](const auto &waiting) { return !m_runs.contains(waiting.first); });
        if (next == m_waiting.end()) {
            return;
        }
        const auto [id, task] = *next;
        m_waiting.erase(next);
        begin(id, task);
    }
}

void Conversions::begin(std::uint32_t taskId, const tasks::TaskInfo &task)
{
    auto run = std::make_shared<Run>();
    run->task = task;
    run->thread = std::make_unique<platform::WorkerThread>([run, port = m_inbox.port(), taskId] {
        run->result = convert::RunConversion(run->task, run->stop, [&](int percent) {
            run->percent = percent;
            port.post(AppMessageId::ConversionNews, taskId, kProgressed);
        });
        port.post(AppMessageId::ConversionNews, taskId, kEnded);
    });
    m_runs.emplace(taskId, run);
    if (!run->thread->resume()) {
        // Else no end would ever be told, and the place would be lost.
        m_inbox.port().post(AppMessageId::ConversionNews, taskId, kEnded);
    }
}

void Conversions::take(const platform::AppMessage &message)
{
    const auto id = static_cast<std::uint32_t>(message.first);
    const auto found = m_runs.find(id);
    if (found == m_runs.end()) {
        return;
    }
    if (message.second == kEnded) {
        const auto run = found->second;
        m_runs.erase(found);
        if (run->result.end == ConversionEnd::Ended && !run->result.isGood) {
            const QString reason = run->result.lastLine;
            m_failures[id] = reason.isEmpty() ? QStringLiteral("TransVert") : reason;
        }
        beginWaiting();
    }
    m_onChange(id);
}

void Conversions::stop(std::uint32_t taskId)
{
    const auto run = m_runs.find(taskId);
    if (run != m_runs.end()) {
        run->second->isStopping = true;
        run->second->stop.set();
    }
    std::erase_if(m_waiting, [taskId](const auto &waiting) { return waiting.first == taskId; });
    m_failures.erase(taskId);
    m_onChange(taskId);
}

std::optional<int> Conversions::percent(std::uint32_t taskId) const
{
    const auto run = m_runs.find(taskId);
    if (run != m_runs.end()) {
        return run->second->percent.load();
    }
    return waits(taskId) ? std::optional(0) : std::nullopt;
}

bool Conversions::waits(std::uint32_t taskId) const
{
    return std::any_of(m_waiting.begin(), m_waiting.end(),
                       [taskId](const auto &waiting) { return waiting.first == taskId; });
}

QString Conversions::failure(std::uint32_t taskId) const
{
    const auto found = m_failures.find(taskId);
    return found == m_failures.end() ? QString() : found->second;
}

} // namespace tollivar::app
