#include "tasks/task_recorder.h"

namespace tollivar::tasks {

namespace {

constexpr std::chrono::milliseconds kProgressInterval{1'000};

/// Numbers are stored in their signed form; the unknown size is -1 there.
std::int32_t stored(std::uint64_t value)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

} // namespace

TaskRecorder::TaskRecorder(TaskManager &manager, TaskDatabase &database,
                           const platform::Clock &clock)
    : m_manager(manager)
    , m_database(database)
    , m_clock(clock)
{
}

void TaskRecorder::record(std::uint64_t first, std::uint64_t second)
{
    const std::uint32_t id = taskIdOf(first);
    const TaskWorker *const worker = m_manager.worker(id);
    if (worker == nullptr) {
        m_lastProgress.erase(id);
        return;
    }
    const TaskEventCode code = eventCodeOf(first);
    if (endsRun(code)) {
        m_lastProgress.erase(id);
    }
    switch (code) {
    case TaskEventCode::Completed:
        recordCompletion(id, worker->record());
        break;
    case TaskEventCode::RecordChanged: {
        const TaskInfo record = worker->record();
        m_database.inTransaction([&] {
            m_manager.updateText(id, TextColumn::OutputName, record.strOutputName);
            m_manager.updateText(id, TextColumn::FileType, record.strFileType);
        });
        break;
    }
    case TaskEventCode::AnswerStored:
        recordAnswer(id, worker->record());
        break;
    case TaskEventCode::FileCreated:
        m_manager.updateNumber(id, NumberColumn::FileCreated, 1);
        break;
    case TaskEventCode::SizeKnown:
        // A stream's size is a projection that comes anew with each report.
        if (worker->record().nProtocol == kProtocolHttp) {
            m_manager.updateNumber(id, NumberColumn::Size, stored(second));
        }
        break;
    case TaskEventCode::Progress:
    case TaskEventCode::ProgressUnknownSize:
        recordProgress(id, stored(second), worker->record());
        break;
    case TaskEventCode::ParsingAddress:
    case TaskEventCode::DownloadStarted:
    case TaskEventCode::TakingTitle:
    case TaskEventCode::ParseFailed:
    case TaskEventCode::DownloadFailed:
    case TaskEventCode::Stopped:
        break;
    }
}

void TaskRecorder::recordProgress(std::uint32_t id, std::int32_t bytes, const TaskInfo &record)
{
    constexpr std::size_t kManyTasks = 64;
    if (m_lastProgress.size() > kManyTasks) {
        // Of tasks that were removed while they rested nothing is heard any more.
        std::erase_if(m_lastProgress, [this](const auto &entry) {
            return m_manager.worker(entry.first) == nullptr;
        });
    }
    const auto now = m_clock.steadyNow();
    const auto [last, isFirst] = m_lastProgress.try_emplace(id, now);
    if (!isFirst && now - last->second < kProgressInterval) {
        return;
    }
    last->second = now;
    m_manager.updateNumber(id, NumberColumn::DownloadSize, bytes, Durability::Progress);
    if (record.nProtocol != kProtocolHttp) {
        m_manager.updateNumber(id, NumberColumn::Size, stored(record.dwSize), Durability::Progress);
    }
}

void TaskRecorder::recordCompletion(std::uint32_t id, const TaskInfo &record)
{
    m_database.inTransaction([&] {
        m_manager.updateNumber(id, NumberColumn::DownloadSize, stored(record.dwDownloadSize));
        m_manager.updateNumber(id, NumberColumn::CompletedStatus, record.nCompletedStatus);
        if (record.dwSize == kUnknownSize || record.nProtocol != kProtocolHttp) {
            m_manager.updateNumber(id, NumberColumn::Size, stored(record.dwDownloadSize));
        }
    });
}

void TaskRecorder::recordAnswer(std::uint32_t id, const TaskInfo &record)
{
    m_database.inTransaction([&] {
        m_manager.updateText(id, TextColumn::DownloadUrl, record.strDownloadUrl);
        m_manager.updateText(id, TextColumn::FileType, record.strFileType);
        m_manager.updateText(id, TextColumn::Cookies, record.strCookies);
        m_manager.updateText(id, TextColumn::Agent, record.strAgent);
        m_manager.updateText(id, TextColumn::Referer, record.strReferer);
    });
}

} // namespace tollivar::tasks
