// What the buttons, menus and keys of the main window do.

#include "app/language/menu_tables.h"
#include "convert/profile_table.h"
#include "platform/build_config.h"
#include "ui/dialogs/about_dlg.h"
#include "ui/dialogs/confirm_delete_dlg.h"
#include "ui/main_window/main_menus.h"
#include "ui/main_window/task_details.h"
#include "ui/main_window/tollivar_dlg.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHash>
#include <QMessageBox>
#include <QToolButton>

#include <algorithm>
#include <numeric>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using tasks::TaskFilter;

void CTollivarDlg::handleClick(const QString &name)
{
    static const QHash<QString, void (CTollivarDlg::*)()> kActions = {
        {u"btnAddUrl"_s, &CTollivarDlg::addTask},
        {u"btnBrowser"_s, &CTollivarDlg::openBrowser},
        {u"btnPlayer"_s, &CTollivarDlg::playSelected},
        {u"btnStart"_s, &CTollivarDlg::startSelected},
        {u"btnStop"_s, &CTollivarDlg::stopSelected},
        {u"btnRemove"_s, &CTollivarDlg::removeSelected},
        {u"btnClearAll"_s, &CTollivarDlg::clearCompleted},
        {u"btnExit"_s, &CTollivarDlg::exitWanted},
        {u"btnHome"_s, &CTollivarDlg::homePageWanted},
        {u"btnMenu"_s, &CTollivarDlg::showHelpMenu},
        {u"btnMin"_s, &CTollivarDlg::showMinimized},
        {u"btnMax"_s, &CTollivarDlg::showMaximized},
        {u"btnRestore"_s, &CTollivarDlg::showNormal},
        {u"btnClose"_s, &CTollivarDlg::closeToTray},
        {u"btnAll"_s, &CTollivarDlg::showAll},
        {u"btnDownloading"_s, &CTollivarDlg::showDownloading},
        {u"btnDownloaded"_s, &CTollivarDlg::showDownloaded},
    };
    if (const auto action = kActions.value(name)) {
        (this->*action)();
    }
}

void CTollivarDlg::openBrowser()
{
    const bool isQuick = QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier);
    Q_EMIT browserWanted(!isQuick);
}

void CTollivarDlg::runCommand(int command)
{
    namespace commands = language::commands;
    switch (command) {
    case commands::kToggleWindow:
        toggleWindow();
        break;
    case commands::kAddTask:
        addTask();
        break;
    case commands::kAbout:
        showAbout();
        break;
    case commands::kExit:
        Q_EMIT exitWanted();
        break;
    case commands::kDropZone:
        Q_EMIT dropZoneToggled();
        break;
    case commands::kCopyWebAddress:
        copyAddresses(&tasks::TaskInfo::strOriURL);
        break;
    case commands::kCopyFileAddress:
        copyAddresses(&tasks::TaskInfo::strDownloadUrl);
        break;
    case commands::kSettings:
        Q_EMIT settingsWanted();
        break;
    case commands::kCheckUpdates:
        Q_EMIT updateCheckWanted();
        break;
    case commands::kHelp:
        Q_EMIT helpWanted();
        break;
    case commands::kCannotWatch:
        Q_EMIT playerHelpWanted();
        break;
    case commands::kHomePage:
        Q_EMIT homePageWanted();
        break;
    default:
        runOnSelected(command);
        break;
    }
}

void CTollivarDlg::runOnSelected(int command)
{
    namespace commands = language::commands;
    const std::vector<tasks::TaskInfo> selected = selectedTasks();
    if (selected.empty()) {
        return;
    }
    const tasks::TaskInfo &first = selected.front();
    switch (command) {
    case commands::kPlay:
        Q_EMIT fileWanted(first.outputPath());
        break;
    case commands::kPlayInPlayer:
        Q_EMIT playerWanted(first.outputPath());
        break;
    case commands::kBrowseFile:
    case commands::kOpenFolder:
        Q_EMIT folderWanted(first.strOutputFolder, first.outputPath());
        break;
    case commands::kOpenWebPage:
        Q_EMIT webPageWanted(first.strOriURL);
        break;
    case commands::kConvert:
        Q_EMIT conversionWanted(selected);
        break;
    default:
        break;
    }
}

void CTollivarDlg::startSelected()
{
    const bool filterChanged = m_commands.startSelected([this] {
        switch (QMessageBox::question(this, QString(platform::build::kProductName),
                                      text(u"strMsgCompletedTasks"),
                                      QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel)) {
        case QMessageBox::Yes:
            // What is being read is about to be downloaded anew.
            stopConversions(m_list->selectedRows());
            return Answer::Yes;
        case QMessageBox::No:
            return Answer::No;
        default:
            return Answer::Cancel;
        }
    });
    if (filterChanged) {
        button("btnDownloading"_L1).setChecked(true);
    }
    m_list->viewport()->update();
    refreshCaptions();
}

void CTollivarDlg::stopSelected()
{
    m_commands.stopSelected();
    stopConversions(m_list->selectedRows());
}

void CTollivarDlg::stopConversions(const std::vector<int> &rows)
{
    for (const int row : rows) {
        const auto *worker = m_services.manager.workerAt(row);
        if (worker != nullptr && worker->state() == tasks::TaskState::Completed &&
            m_services.stopConversion) {
            m_services.stopConversion(worker->taskId());
        }
    }
}

void CTollivarDlg::redrawTask(std::uint32_t taskId)
{
    redrawRow(m_services.manager.rowOf(taskId));
}

void CTollivarDlg::removeSelected()
{
    if (m_list->selectedRows().empty()) {
        return;
    }
    CConfirmDeleteDlg dialog(this, m_services.texts.dialog);
    if (dialog.exec() == QDialog::Accepted) {
        stopConversions(m_list->selectedRows());
        m_commands.removeSelected(dialog.files());
        refreshCaptions();
    }
}

void CTollivarDlg::clearCompleted()
{
    if (QMessageBox::question(this, QString(platform::build::kProductName),
                              text(u"strMsgRemoveAll")) != QMessageBox::Yes) {
        return;
    }
    button("btnDownloaded"_L1).setChecked(true);
    m_services.manager.setFilter(TaskFilter::Downloaded);
    std::vector<int> rows(static_cast<std::size_t>(m_services.manager.visibleCount()));
    std::iota(rows.begin(), rows.end(), 0);
    stopConversions(rows);
    m_commands.clearCompleted();
    refreshCaptions();
}

void CTollivarDlg::setFilter(TaskFilter filter)
{
    m_services.manager.setFilter(filter);
    m_list->refreshRows();
    refreshCaptions();
}

void CTollivarDlg::showAll()
{
    setFilter(TaskFilter::All);
}

void CTollivarDlg::showDownloading()
{
    setFilter(TaskFilter::Downloading);
}

void CTollivarDlg::showDownloaded()
{
    setFilter(TaskFilter::Downloaded);
}

std::vector<tasks::TaskInfo> CTollivarDlg::selectedTasks() const
{
    std::vector<tasks::TaskInfo> selected;
    for (const int row : m_list->selectedRows()) {
        if (const auto *worker = m_services.manager.workerAt(row)) {
            selected.push_back(worker->record());
        }
    }
    return selected;
}

QStringList CTollivarDlg::profilesForSelected() const
{
    const auto rows = m_list->selectedRows();
    const bool areFinished =
        !rows.empty() && std::all_of(rows.begin(), rows.end(), [this](int row) {
            const auto *worker = m_services.manager.workerAt(row);
            return worker != nullptr && worker->state() == tasks::TaskState::Completed;
        });
    if (!areFinished) {
        return {};
    }
    QStringList names = convert::ProfileTable::BuildProfiles().names();
    names.removeOne(convert::ProfileTable::defaultName());
    return names;
}

void CTollivarDlg::convertSelected(const QString &profile)
{
    const auto table = convert::ProfileTable::BuildProfiles();
    for (const int row : m_list->selectedRows()) {
        const auto *worker = m_services.manager.workerAt(row);
        if (worker == nullptr || worker->state() != tasks::TaskState::Completed) {
            continue;
        }
        tasks::TaskInfo task = worker->record();
        if (table.ApplyProfileDefaults(profile, task.m_ConvOpts)) {
            Q_EMIT profileWanted(task, worker->taskId());
        }
    }
}

void CTollivarDlg::playSelected()
{
    const auto selected = selectedTasks();
    Q_EMIT playerWanted(selected.empty() ? QString() : selected.front().outputPath());
}

void CTollivarDlg::copyAddresses(QString tasks::TaskInfo::*address)
{
    QString copied;
    for (const tasks::TaskInfo &task : selectedTasks()) {
        copied += task.*address + u"\r\n"_s;
    }
    copyText(copied);
}

void CTollivarDlg::copyDetails()
{
    QStringList details;
    for (const int row : m_list->selectedRows()) {
        details.append(taskDetails(m_list->sourceOf(row), m_services.texts.text,
                                   QDateTime::currentDateTime()));
    }
    copyText(details.join(u'\n'));
}

void CTollivarDlg::copyText(const QString &copied)
{
    m_copiedText = copied;
    if (!copied.isEmpty()) {
        QGuiApplication::clipboard()->setText(copied);
    }
}

void CTollivarDlg::showHelpMenu()
{
    const QToolButton &opener = button("btnMenu"_L1);
    m_menus->help().popup(opener.mapToGlobal(QPoint(0, opener.height() + 2)));
}

void CTollivarDlg::showAbout()
{
    AboutDialog dialog(isVisible() ? this : nullptr, m_services.texts.dialog);
    connect(&dialog, &AboutDialog::homePageWanted, this, &CTollivarDlg::homePageWanted);
    dialog.exec();
}

} // namespace tollivar::ui
