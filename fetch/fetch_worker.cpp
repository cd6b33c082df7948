#include "fetch/fetch_worker.h"

#include "fetch/http_download.h"
#include "fetch/page_resolver.h"
#include "fetch/parse_mode.h"
#include "fetch/rtmp_download.h"
#include "fetch/text/file_naming.h"
#include "fetch/text/site_url.h"
#include "fetch/title_fetch.h"
#include "tasks/api/download_mode.h"

#include <array>
#include <exception>

namespace tollivar::fetch {

using tasks::DownloadMethod;
using tasks::TaskEventCode;
using tasks::TaskInfo;
using tasks::TaskState;

namespace {

constexpr std::chrono::milliseconds kRetryPauseStep{500};

bool isMethod(const TaskInfo &task, DownloadMethod method)
{
    return task.nModeLow == static_cast<int>(method);
}

QStringView parseType(const TaskInfo &task)
{
    if (isMethod(task, DownloadMethod::VideoSite)) {
        return u"PARSE_TYPE_YOUTUBE";
    }
    return isMethod(task, DownloadMethod::Flash) ? QStringView(u"PARSE_TYPE_SWFAUTO")
                                                 : QStringView(u"PARSE_TYPE_FLVAUTO");
}

} // namespace

FetchWorker::FetchWorker(const platform::Clock &clock) : m_clock(clock) {}

void FetchWorker::run()
{
    TaskEventCode end = TaskEventCode::DownloadFailed;
    try {
        end = runSteps();
    } catch (const std::exception &error) {
        qWarning("a download ended by an exception: %s", error.what());
    }
    post(end);
}

TaskEventCode FetchWorker::runSteps()
{
    if (waitRetryPause() == StepResult::Stopped) {
        return TaskEventCode::Stopped;
    }
    TaskInfo task = record();
    if (!isMethod(task, DownloadMethod::Direct)) {
        switch (resolve(task)) {
        case StepResult::Stopped:
            return TaskEventCode::Stopped;
        case StepResult::ParseFailed:
        case StepResult::Failed:
            setFailure({.kind = tasks::ErrorKind::NoAddress});
            return TaskEventCode::ParseFailed;
        case StepResult::Done:
            break;
        }
        setRecord(task);
        post(TaskEventCode::AnswerStored);
        enterStage(TaskState::TakingTitle);
        post(TaskEventCode::TakingTitle);
        if (takeTitle(task) == StepResult::Stopped) {
            return TaskEventCode::Stopped;
        }
    }
    enterStage(TaskState::Downloading);
    post(TaskEventCode::DownloadStarted);
    const StepResult result = download(task);
    task.nCompletedStatus = result == StepResult::Done ? 1 : 0;
    setRecord(task);
    switch (result) {
    case StepResult::Stopped:
        return TaskEventCode::Stopped;
    case StepResult::Failed:
        return TaskEventCode::DownloadFailed;
    case StepResult::ParseFailed:
    case StepResult::Done:
        break;
    }
    return TaskEventCode::Completed;
}

StepResult FetchWorker::waitRetryPause()
{
    if (retryAttempt() == 0) {
        return StepResult::Done;
    }
    for (auto left = std::chrono::milliseconds(retryPause()); left.count() > 0;
         left -= kRetryPauseStep) {
        if (stopEvent().wait(kRetryPauseStep)) {
            return StepResult::Stopped;
        }
    }
    return stopEvent().poll() ? StepResult::Stopped : StepResult::Done;
}

StepResult FetchWorker::resolve(TaskInfo &task)
{
    enterStage(TaskState::ResolvingPage);
    post(TaskEventCode::ParsingAddress);
    const QString address = addressForParser(task.strOriURL, task.nModeHigh);
    const auto modes = parseModes(browserVersion());
    // The second line has no blank before its mode; the parser understands both.
    const std::array<QStringView, 2> separators = {u" ", u""};
    // The first always runs: an address that an earlier run found may have expired.
    for (std::size_t i = 0; i < modes.size() && (i == 0 || task.strDownloadUrl.isEmpty()); ++i) {
        const QString commandLine =
            parserCommandLine(address, separators.at(i), modes.at(i), parseType(task));
        if (resolvePage(stopEvent(), commandLine, task) == StepResult::Stopped) {
            return StepResult::Stopped;
        }
    }
    return task.strDownloadUrl.isEmpty() ? StepResult::ParseFailed : StepResult::Done;
}

StepResult FetchWorker::takeTitle(TaskInfo &task)
{
    if (task.bAutoRename == 0 || task.bFileCreated != 0) {
        return StepResult::Done;
    }
    const FetchedTitle fetched = fetchTitle(task.strOriURL, stopEvent());
    if (fetched.result != StepResult::Done || fetched.title.isEmpty()) {
        return fetched.result;
    }
    task.strOutputName = fittingName(cleanName(fetched.title, u' '), task.strFileType);
    setRecord(task);
    post(TaskEventCode::RecordChanged);
    return StepResult::Done;
}

StepResult FetchWorker::download(TaskInfo &task)
{
    return task.nProtocol == tasks::kProtocolHttp ? downloadHttp(*this, task, m_clock)
                                                  : downloadRtmp(*this, task, m_clock);
}

} // namespace tollivar::fetch
