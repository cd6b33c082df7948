#include "app/cli/task_view.h"

#include "app/cli/progress_line.h"
#include "app/cli/standard_streams.h"
#include "platform/terminal.h"
#include "tasks/api/status_text.h"
#include "tasks/api/task_event.h"

namespace tollivar::app {

namespace {

using tasks::TaskEventCode;

QString statusOf(TaskEventCode code, std::int64_t value = 0)
{
    return tasks::statusText(static_cast<int>(code), value).text.value_or(QString());
}

/// What the running task's line begins with.
QString runningStatus(const TaskReport &report)
{
    switch (report.kind) {
    case ReportKind::Resolving:
        return statusOf(TaskEventCode::ParsingAddress);
    case ReportKind::Title:
        return statusOf(TaskEventCode::TakingTitle);
    case ReportKind::Retry:
        return report.reason;
    case ReportKind::Converting:
        return QStringLiteral("Converting - %1%").arg(report.convertedPercent.value_or(0));
    case ReportKind::Downloading:
    case ReportKind::Progress: {
        const tasks::TaskProgress progress = report.progress.value_or(tasks::TaskProgress{});
        return report.task.dwSize == tasks::kUnknownSize
                   ? statusOf(TaskEventCode::ProgressUnknownSize, progress.bytesDownloaded)
                   : statusOf(TaskEventCode::DownloadStarted,
                              static_cast<std::int64_t>(progress.percentHundredths));
    }
    case ReportKind::Added: // A waiting task says nothing: there may be thousands.
    case ReportKind::Completed:
    case ReportKind::Failed:
    case ReportKind::Stopped:
        return {};
    }
    return {};
}

} // namespace

void JsonTaskView::show(const TaskReport &report)
{
    writeOutput(reportJson(report) + '\n');
}

TextTaskView::TextTaskView() : m_isTerminal(platform::errorIsTerminal()) {}

TextTaskView::~TextTaskView()
{
    clearLines();
}

void TextTaskView::show(const TaskReport &report)
{
    clearLines();
    if (const QString status = runningStatus(report); !status.isEmpty()) {
        m_lines[report.row] =
            progressLine(status, report.task, report.progress.value_or(tasks::TaskProgress{}),
                         platform::errorTerminalColumns());
    } else {
        m_lines.erase(report.row);
    }
    if (report.kind == ReportKind::Completed) {
        writeOutput(finishedPath(report).toUtf8() + '\n');
    } else if (report.kind == ReportKind::Failed || report.kind == ReportKind::Stopped) {
        const QString &address = report.task.strOriURL;
        complain((address.isEmpty() ? report.task.outputPath() : address) + QStringLiteral(": ") +
                 report.reason);
    }
    drawLines();
}

std::unique_ptr<TaskView> makeView(CliOutput output)
{
    if (output == CliOutput::Json) {
        return std::make_unique<JsonTaskView>();
    }
    return std::make_unique<TextTaskView>();
}

void TextTaskView::clearLines()
{
    for (; m_drawnLines > 0; --m_drawnLines) {
        writeError(QStringLiteral("\x1b[1A\x1b[2K"));
    }
}

void TextTaskView::drawLines()
{
    if (!m_isTerminal) {
        return;
    }
    QString lines;
    for (const auto &[row, line] : m_lines) {
        lines += printable(line) + QLatin1Char('\n');
        ++m_drawnLines;
    }
    writeError(lines);
}

} // namespace tollivar::app
