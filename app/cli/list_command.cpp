#include "app/cli/list_command.h"

#include "app/cli/exit_status.h"
#include "app/cli/standard_streams.h"
#include "app/cli/task_report.h"
#include "app/data_directory.h"
#include "tasks/stored_tasks.h"

namespace tollivar::app {

namespace {

QString sizesOf(const tasks::TaskInfo &task)
{
    const auto megabytes = [](std::uint32_t bytes) {
        return QString::number(bytes / (1024.0 * 1024.0), 'f', 2);
    };
    const QString whole =
        task.dwSize == tasks::kUnknownSize ? QStringLiteral("?") : megabytes(task.dwSize);
    return megabytes(task.dwDownloadSize) + QLatin1Char('/') + whole + QStringLiteral(" MB");
}

QString asLine(const tasks::StoredTask &stored)
{
    return QStringLiteral("%1  %2  %3  %4  %5\n")
        .arg(QString::number(stored.row).rightJustified(5),
             storedState(stored.task).leftJustified(9), sizesOf(stored.task).rightJustified(17),
             printable(stored.task.strOutputName + stored.task.strFileType),
             printable(stored.task.strOriURL));
}

QByteArray asJson(const std::vector<tasks::StoredTask> &tasks)
{
    QByteArrayList objects;
    for (const tasks::StoredTask &stored : tasks) {
        objects.append(storedTaskJson(stored.row, stored.task));
    }
    return '[' + objects.join(",\n") + "]\n";
}

} // namespace

int runList(const CliList &list)
{
    const auto paths = locateData();
    if (!paths) {
        complain(paths.error().text);
        return kDataUnusable;
    }
    const auto tasks = tasks::readStoredTasks(paths->tasks);
    if (!tasks) {
        complain(tasks.error().text);
        return kDataUnusable;
    }
    if (list.output == CliOutput::Json) {
        writeOutput(asJson(*tasks));
        return kAllCompleted;
    }
    QString lines;
    for (const tasks::StoredTask &stored : *tasks) {
        lines += asLine(stored);
    }
    writeOutput(lines.toUtf8());
    return kAllCompleted;
}

} // namespace tollivar::app
