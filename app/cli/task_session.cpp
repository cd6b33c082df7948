#include "app/cli/task_session.h"

#include "app/cli/exit_status.h"
#include "app/missing_browser.h"
#include "convert/converter_command.h"
#include "platform/interrupt.h"
#include "tasks/api/failure_text.h"

namespace tollivar::app {

using tasks::TaskEventCode;
using tasks::TaskState;

namespace {

QString whyItFailed(const tasks::TaskWorker &worker)
{
    const QString text =
        tasks::failureText(worker.previousState()) + tasks::failureReason(worker.failure());
    return worker.previousState() == TaskState::ResolvingPage && lacksBrowser()
               ? text + QStringLiteral(" - no browser to open the page with; install chromium")
               : text;
}

} // namespace

TaskSession::TaskSession(Engine &engine, TaskView &view) : m_engine(engine), m_view(view)
{
    m_engine.onEvent([this](std::uint32_t id, TaskEventCode code) { handleEvent(id, code); });
}

TaskSession::~TaskSession()
{
    m_engine.onEvent({});
}

bool TaskSession::add(const tasks::TaskInfo &task)
{
    const std::uint32_t id = m_engine.manager().addTask(task, tasks::TaskOrigin::New);
    if (m_engine.manager().storedRowOf(id) == 0) {
        return false;
    }
    report(ReportKind::Added, id);
    start(id);
    return true;
}

void TaskSession::start(std::uint32_t taskId)
{
    m_unfinished.insert(taskId);
    auto &manager = m_engine.manager();
    manager.startTask(manager.rowOf(taskId), tasks::Placement::Keep);
}

int TaskSession::wait()
{
    const platform::InterruptWatch interrupt(kInterrupted, [this] { stopAll(); });
    if (!m_unfinished.empty()) {
        m_loop.exec();
    }
    if (m_isInterrupted) {
        return kInterrupted;
    }
    return m_hasFailure ? kTaskFailed : kAllCompleted;
}

void TaskSession::handleEvent(std::uint32_t taskId, TaskEventCode code)
{
    if (!m_unfinished.contains(taskId)) {
        return;
    }
    switch (code) {
    case TaskEventCode::ParsingAddress:
        report(ReportKind::Resolving, taskId);
        break;
    case TaskEventCode::TakingTitle:
        report(ReportKind::Title, taskId);
        break;
    case TaskEventCode::DownloadStarted:
        report(ReportKind::Downloading, taskId);
        break;
    case TaskEventCode::Progress:
    case TaskEventCode::ProgressUnknownSize:
        report(ReportKind::Progress, taskId);
        break;
    case TaskEventCode::ParseFailed:
    case TaskEventCode::DownloadFailed:
    case TaskEventCode::Completed:
    case TaskEventCode::Stopped:
        reportEnd(taskId);
        break;
    case TaskEventCode::SizeKnown:
    case TaskEventCode::RecordChanged:
    case TaskEventCode::AnswerStored:
    case TaskEventCode::FileCreated:
        break;
    }
}

void TaskSession::reportEnd(std::uint32_t taskId)
{
    const tasks::TaskWorker &worker = *m_engine.manager().worker(taskId);
    switch (worker.state()) {
    case TaskState::Started:
        report(ReportKind::Retry, taskId,
               whyItFailed(worker) +
                   QStringLiteral(" - Wait 5 secs before retry (%1)").arg(worker.retryAttempt()));
        return;
    case TaskState::Completed:
        complete(taskId);
        return;
    case TaskState::Failed:
        m_hasFailure = true;
        report(ReportKind::Failed, taskId, whyItFailed(worker));
        break;
    case TaskState::New:
    case TaskState::Waiting:
    case TaskState::ResolvingPage:
    case TaskState::TakingTitle:
    case TaskState::Downloading:
    case TaskState::Stopped:
    case TaskState::Stopping:
    case TaskState::StoppingToRestart:
    case TaskState::Removed:
        report(ReportKind::Stopped, taskId, QStringLiteral("Stopped"));
        break;
    }
    finish(taskId);
}

void TaskSession::complete(std::uint32_t taskId)
{
    const tasks::TaskInfo &task = m_engine.manager().worker(taskId)->record();
    if (task.m_ConvOpts.m_csType.isEmpty() || m_isInterrupted) {
        report(ReportKind::Completed, taskId);
        finish(taskId);
    } else {
        m_converting.insert(taskId);
        m_conversions.start(taskId, task);
    }
}

void TaskSession::followConversion(std::uint32_t taskId)
{
    if (const auto percent = m_conversions.percent(taskId)) {
        TaskReport converting = reportOf(ReportKind::Converting, taskId);
        converting.convertedPercent = percent;
        m_view.show(converting);
        return;
    }
    m_converting.erase(taskId);
    if (m_isInterrupted) {
        report(ReportKind::Stopped, taskId, QStringLiteral("Stopped"));
    } else if (const QString reason = m_conversions.failure(taskId); !reason.isEmpty()) {
        m_hasFailure = true;
        report(ReportKind::Failed, taskId, reason);
    } else {
        TaskReport completed = reportOf(ReportKind::Completed, taskId);
        completed.path = convert::convertedPath(completed.task);
        m_view.show(completed);
    }
    finish(taskId);
}

void TaskSession::finish(std::uint32_t taskId)
{
    m_unfinished.erase(taskId);
    if (m_unfinished.empty()) {
        m_loop.quit();
    }
}

void TaskSession::stopAll()
{
    m_isInterrupted = true;
    auto &manager = m_engine.manager();
    for (const std::uint32_t id : std::set(m_converting)) {
        m_conversions.stop(id);
    }
    for (const std::uint32_t id : std::set(m_unfinished)) {
        if (manager.stopTask(manager.rowOf(id)) == tasks::StopOutcome::Stopped) {
            reportEnd(id);
        }
    }
}

void TaskSession::report(ReportKind kind, std::uint32_t taskId, const QString &reason)
{
    TaskReport report = reportOf(kind, taskId);
    report.reason = reason;
    m_view.show(report);
}

TaskReport TaskSession::reportOf(ReportKind kind, std::uint32_t taskId) const
{
    const auto *const worker = m_engine.manager().worker(taskId);
    TaskReport report{
        .kind = kind, .row = m_engine.manager().storedRowOf(taskId), .task = worker->record()};
    if (kind == ReportKind::Downloading || kind == ReportKind::Progress) {
        report.progress = worker->progress();
    }
    return report;
}

} // namespace tollivar::app
