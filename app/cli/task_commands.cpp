#include "app/cli/task_commands.h"

#include "app/cli/convert_command.h"
#include "app/cli/exit_status.h"
#include "app/cli/standard_streams.h"
#include "app/cli/task_session.h"
#include "app/data_directory.h"
#include "app/manager_options.h"
#include "app/task_request.h"
#include "platform/local_messages.h"
#include "platform/single_instance.h"
#include "settings/settings_store.h"

#include <QDir>

namespace tollivar::app {

using platform::ErrorKind;
using platform::Result;

namespace {

constexpr std::chrono::milliseconds kHandOverLimit{3'000};

/// The engine on the person's own data; null with the reason told.
std::unique_ptr<Engine> openEngine(const DataPaths &paths)
{
    auto engine =
        Engine::create({.databasePath = paths.tasks,
                        .legacyListPath = paths.legacyTasks,
                        .manager = managerOptions(settings::SettingsStore(paths.settings)),
                        .notifier = [](const QString &message) { complain(message); }});
    if (engine) {
        return std::move(*engine);
    }
    complain(
        engine.error().kind == ErrorKind::TryAgain
            ? QStringLiteral("a running Tollivar or tollivar-cli works with the tasks; end it, "
                             "or use its window")
            : engine.error().text);
    return nullptr;
}

std::optional<DataPaths> openData()
{
    auto paths = setUpData();
    if (!paths) {
        complain(paths.error().text);
        return std::nullopt;
    }
    return *paths;
}

tasks::DownloadMethod methodOf(CliMode mode)
{
    switch (mode) {
    case CliMode::Video:
        return tasks::DownloadMethod::Video;
    case CliMode::Flash:
        return tasks::DownloadMethod::Flash;
    case CliMode::Direct:
        return tasks::DownloadMethod::Direct;
    }
    return tasks::DownloadMethod::Video;
}

Result<std::vector<TaskRequest>> requestsOf(const CliDownload &download, const QString &folder)
{
    QString profile;
    if (!download.profile.isEmpty()) {
        const auto meant = meantProfile(convert::ProfileTable::BuildProfiles(), download.profile);
        if (!meant) {
            return tl::unexpected(meant.error());
        }
        profile = *meant;
    }
    std::vector<TaskRequest> requests;
    for (const QString &given : download.addresses) {
        const auto address = checkedAddress(given);
        if (!address) {
            return tl::unexpected(address.error());
        }
        requests.push_back({.address = *address,
                            .folder = folder,
                            .name = download.name,
                            .method = methodOf(download.mode),
                            .quality = download.quality,
                            .profile = profile});
    }
    return requests;
}

Result<std::vector<tasks::TaskInfo>> tasksOf(const std::vector<TaskRequest> &requests)
{
    std::vector<tasks::TaskInfo> records;
    for (const TaskRequest &request : requests) {
        auto task = newTask(request);
        if (!task) {
            return tl::unexpected(task.error());
        }
        records.push_back(std::move(*task));
    }
    return records;
}

/// True when a running program took the requests over.
bool handOver(const DataPaths &paths, const std::vector<TaskRequest> &requests)
{
    return platform::sendLocalMessage(platform::instancePlace(paths.directory).socket,
                                      platform::CopyDataId::AddTasks, encodeTaskRequests(requests),
                                      kHandOverLimit)
        .has_value();
}

int downloadHere(const DataPaths &paths, const std::vector<tasks::TaskInfo> &records,
                 CliOutput output)
{
    const auto engine = openEngine(paths);
    if (!engine) {
        return kDataUnusable;
    }
    const auto view = makeView(output);
    TaskSession session(*engine, *view);
    for (const tasks::TaskInfo &record : records) {
        if (!session.add(record)) {
            return kDataUnusable;
        }
    }
    return session.wait();
}

} // namespace

int runDownload(const CliDownload &download, const QString &callerDirectory)
{
    const auto paths = openData();
    if (!paths) {
        return kDataUnusable;
    }
    const QString folder =
        download.folder.isEmpty()
            ? settings::SettingsStore(paths->settings).GetLastFolder()
            : QDir::cleanPath(QDir(callerDirectory).absoluteFilePath(download.folder));
    const auto requests = requestsOf(download, folder);
    if (!requests) {
        complain(requests.error().text);
        return kBadUsage;
    }
    if (handOver(*paths, *requests)) {
        writeError(QStringLiteral("Handed over to the running Tollivar.\n"));
        return kAllCompleted;
    }
    const auto records = tasksOf(*requests);
    if (!records) {
        complain(records.error().text);
        return kBadUsage;
    }
    return downloadHere(*paths, *records, download.output);
}

int runStored(const CliRun &run)
{
    const auto paths = openData();
    const auto engine = paths ? openEngine(*paths) : nullptr;
    if (!engine) {
        return kDataUnusable;
    }
    const auto view = makeView(run.output);
    TaskSession session(*engine, *view);
    for (const std::uint32_t id : engine->manager().allTasks()) {
        if (engine->manager().worker(id)->state() != tasks::TaskState::Completed) {
            session.start(id);
        }
    }
    return session.wait();
}

int runRemove(const CliRemove &remove)
{
    const auto paths = openData();
    const auto engine = paths ? openEngine(*paths) : nullptr;
    if (!engine) {
        return kDataUnusable;
    }
    auto &manager = engine->manager();
    std::map<tasks::RowId, std::uint32_t> ids;
    for (const std::uint32_t id : manager.allTasks()) {
        ids.emplace(manager.storedRowOf(id), id);
    }
    int status = kAllCompleted;
    for (const tasks::RowId row : remove.rows) {
        const auto found = ids.find(row);
        if (found == ids.end()) {
            complain(QStringLiteral("there is no task %1; list shows the ids").arg(row));
            status = kTaskFailed;
            continue;
        }
        manager.removeTask(manager.rowOf(found->second), remove.deleteFiles
                                                             ? tasks::FileOnRemoval::Delete
                                                             : tasks::FileOnRemoval::Keep);
        ids.erase(found);
    }
    return status;
}

} // namespace tollivar::app
