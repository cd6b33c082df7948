#include "app/cli/convert_command.h"

#include "app/cli/exit_status.h"
#include "app/cli/standard_streams.h"
#include "app/cli/task_view.h"
#include "app/conversions.h"
#include "convert/converter_command.h"
#include "platform/interrupt.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>

namespace tollivar::app {

using platform::ErrorKind;
using platform::failure;
using platform::Result;

namespace {

/// The file as a finished task that nobody stores.
Result<tasks::TaskInfo> taskOf(const CliConvert &convert, const QString &callerDirectory)
{
    const QFileInfo file(QDir(callerDirectory).absoluteFilePath(convert.file));
    if (!file.isFile()) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("there is no file \"%1\"").arg(convert.file));
    }
    const auto table = convert::ProfileTable::BuildProfiles();
    const auto name = meantProfile(table, convert.profile);
    if (!name) {
        return tl::unexpected(name.error());
    }
    tasks::TaskInfo task;
    static_cast<void>(table.ApplyProfileDefaults(*name, task.m_ConvOpts));
    if (task.m_ConvOpts.m_csType.isEmpty()) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("the profile \"%1\" converts nothing").arg(*name));
    }
    task.strOutputFolder = QDir::cleanPath(file.absolutePath()) + u'/';
    task.strOutputName = file.completeBaseName();
    task.strFileType = file.suffix().isEmpty() ? QString() : u'.' + file.suffix();
    task.bFileCreated = 1;
    return task;
}

} // namespace

Result<QString> meantProfile(const convert::ProfileTable &table, const QString &text)
{
    const QStringList meant = table.namesMeantBy(text);
    if (meant.size() == 1) {
        return meant.front();
    }
    return failure(
        ErrorKind::AskUser,
        meant.isEmpty()
            ? QStringLiteral("no profile begins with \"%1\"; profiles shows the names").arg(text)
            : QStringLiteral("\"%1\" can mean: %2").arg(text, meant.join(u"; ")));
}

int runConvert(const CliConvert &convert, const QString &callerDirectory)
{
    constexpr std::uint32_t kOnlyId = 1;
    const auto task = taskOf(convert, callerDirectory);
    if (!task) {
        complain(task.error().text);
        return kBadUsage;
    }
    const auto view = makeView(convert.output);
    QEventLoop loop;
    std::unique_ptr<Conversions> conversions;
    conversions = std::make_unique<Conversions>([&](std::uint32_t id) {
        if (const auto percent = conversions->percent(id)) {
            view->show(
                {.kind = ReportKind::Converting, .task = *task, .convertedPercent = percent});
        } else {
            loop.quit();
        }
    });
    bool isInterrupted = false;
    const platform::InterruptWatch interrupt(kInterrupted, [&] {
        isInterrupted = true;
        conversions->stop(kOnlyId);
    });
    conversions->start(kOnlyId, *task);
    loop.exec();
    if (isInterrupted) {
        view->show(
            {.kind = ReportKind::Stopped, .task = *task, .reason = QStringLiteral("Stopped")});
        return kInterrupted;
    }
    if (const QString reason = conversions->failure(kOnlyId); !reason.isEmpty()) {
        view->show({.kind = ReportKind::Failed, .task = *task, .reason = reason});
        return kTaskFailed;
    }
    view->show(
        {.kind = ReportKind::Completed, .task = *task, .path = convert::convertedPath(*task)});
    return kAllCompleted;
}

} // namespace tollivar::app
