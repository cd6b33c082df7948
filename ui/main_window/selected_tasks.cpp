#include "ui/main_window/selected_tasks.h"

#include "app/language/menu_tables.h"
#include "convert/profile_table.h"
#include "ui/main_window/task_details.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>
#include <utility>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
namespace commands = language::commands;
using tasks::TaskInfo;
using tasks::TaskState;
using tasks::TaskWorker;

namespace {

bool isCompleted(const TaskWorker *worker)
{
    return worker->state() == TaskState::Completed;
}

bool isOfSelected(int command)
{
    const auto entries = language::listMenu().entries;
    return std::any_of(entries.begin(), entries.end(), [command](const language::MenuEntry &entry) {
        return entry.kind == language::MenuEntry::Kind::Command && entry.command == command;
    });
}

/// As far as is known: the window never waits for the disk, where it may be gone meanwhile.
bool hasFile(const TaskInfo &task)
{
    return task.bFileCreated != 0;
}

} // namespace

SelectedTasks::SelectedTasks(const CListCtrlEx &list, const tasks::TaskManager &manager,
                             TextLookup text)
    : m_list(list)
    , m_manager(manager)
    , m_text(std::move(text))
{
}

std::vector<const TaskWorker *> SelectedTasks::workers() const
{
    std::vector<const TaskWorker *> selected;
    for (const int row : m_list.selectedRows()) {
        if (const auto *worker = m_manager.workerAt(row)) {
            selected.push_back(worker);
        }
    }
    return selected;
}

std::vector<TaskInfo> SelectedTasks::records() const
{
    std::vector<TaskInfo> selected;
    for (const TaskWorker *worker : workers()) {
        selected.push_back(worker->record());
    }
    return selected;
}

void SelectedTasks::run(int command)
{
    if (command == commands::kCopyWebAddress) {
        copyAddresses(&TaskInfo::strOriURL);
    } else if (command == commands::kCopyFileAddress) {
        copyAddresses(&TaskInfo::strDownloadUrl);
    } else if (const auto selected = records(); !selected.empty()) {
        runOn(command, selected);
    }
}

void SelectedTasks::runOn(int command, const std::vector<TaskInfo> &tasks)
{
    const TaskInfo &first = tasks.front();
    switch (command) {
    case commands::kPlay:
        Q_EMIT fileWanted(first.outputPath());
        break;
    case commands::kPlayInPlayer:
        Q_EMIT playerWanted(first.outputPath());
        break;
    case commands::kBrowseFile:
    case commands::kOpenFolder:
        Q_EMIT folderWanted(first.outputPath());
        break;
    case commands::kOpenWebPage:
        Q_EMIT webPageWanted(first.strOriURL);
        break;
    case commands::kConvert:
        Q_EMIT conversionWanted(tasks);
        break;
    default:
        break;
    }
}

bool SelectedTasks::can(int command) const
{
    const auto selected = workers();
    if (selected.empty()) {
        return !isOfSelected(command);
    }
    const auto any = [&selected](const auto &isSo) {
        return std::any_of(selected.begin(), selected.end(),
                           [&isSo](const TaskWorker *worker) { return isSo(worker->record()); });
    };
    switch (command) {
    case commands::kPlay:
    case commands::kPlayInPlayer:
    case commands::kBrowseFile:
        return hasFile(selected.front()->record());
    case commands::kConvert:
        return any(hasFile);
    case commands::kCopyWebAddress:
        return any([](const TaskInfo &task) { return !task.strOriURL.isEmpty(); });
    case commands::kCopyFileAddress:
        return any([](const TaskInfo &task) { return !task.strDownloadUrl.isEmpty(); });
    case commands::kOpenWebPage:
        return !selected.front()->record().strOriURL.isEmpty();
    default:
        return true;
    }
}

bool SelectedTasks::areThere() const
{
    return m_list.selectionModel()->hasSelection();
}

void SelectedTasks::play()
{
    const auto selected = records();
    Q_EMIT playerWanted(selected.empty() ? QString() : selected.front().outputPath());
}

void SelectedTasks::playRow(int row)
{
    if (const TaskWorker *worker = m_manager.workerAt(row)) {
        Q_EMIT playerWanted(worker->record().outputPath());
    }
}

bool SelectedTasks::anyIsActive() const
{
    const auto selected = workers();
    return std::any_of(selected.begin(), selected.end(), [](const TaskWorker *worker) {
        return tasks::isRunning(worker->state()) || worker->state() == TaskState::Waiting;
    });
}

QStringList SelectedTasks::profiles() const
{
    const auto selected = workers();
    if (selected.empty() || !std::all_of(selected.begin(), selected.end(), isCompleted)) {
        return {};
    }
    QStringList names = convert::ProfileTable::BuildProfiles().names();
    names.removeOne(convert::ProfileTable::defaultName());
    return names;
}

void SelectedTasks::convertTo(const QString &profile)
{
    const auto table = convert::ProfileTable::BuildProfiles();
    for (const TaskWorker *worker : workers()) {
        TaskInfo task = worker->record();
        if (isCompleted(worker) && table.ApplyProfileDefaults(profile, task.m_ConvOpts)) {
            Q_EMIT profileWanted(task, worker->taskId());
        }
    }
}

void SelectedTasks::copyAddresses(QString TaskInfo::*address)
{
    QString text;
    for (const TaskInfo &task : records()) {
        text += task.*address + u"\r\n"_s;
    }
    copy(text);
}

void SelectedTasks::copyDetails()
{
    QStringList details;
    for (const int row : m_list.selectedRows()) {
        details.append(taskDetails(m_list.sourceOf(row), m_text, QDateTime::currentDateTime()));
    }
    copy(details.join(u'\n'));
}

void SelectedTasks::copy(const QString &text)
{
    Q_EMIT copied(text);
    if (!text.isEmpty()) {
        QGuiApplication::clipboard()->setText(text);
    }
}

} // namespace tollivar::ui
