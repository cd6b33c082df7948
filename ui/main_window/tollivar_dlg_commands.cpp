// What the buttons, menus and keys of the main window do.

#include "app/language/menu_tables.h"
#include "platform/build_config.h"
#include "ui/dialog/message_box.h"
#include "ui/dialogs/about_dlg.h"
#include "ui/dialogs/confirm_delete_dlg.h"
#include "ui/main_window/main_menus.h"
#include "ui/main_window/tollivar_dlg.h"

#include <QGuiApplication>
#include <QHash>
#include <QToolButton>

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
        m_selected->run(command);
        break;
    }
}

void CTollivarDlg::startSelected()
{
    const bool filterChanged = m_commands.startSelected([this] {
        switch (MessageBox::question(this, QString(platform::build::kProductName),
                                     text(u"strMsgCompletedTasks"),
                                     MessageBox::Yes | MessageBox::No | MessageBox::Cancel)) {
        case MessageBox::Yes:
            return Answer::Yes;
        case MessageBox::No:
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
}

void CTollivarDlg::toggleSelected()
{
    m_selected->anyIsActive() ? stopSelected() : startSelected();
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
        m_commands.removeSelected(dialog.files());
        refreshCaptions();
    }
}

void CTollivarDlg::clearCompleted()
{
    if (MessageBox::question(this, QString(platform::build::kProductName),
                             text(u"strMsgRemoveAll")) != MessageBox::Yes) {
        return;
    }
    button("btnDownloaded"_L1).setChecked(true);
    m_commands.clearCompleted();
    refreshCaptions();
}

void CTollivarDlg::setFilter(TaskFilter filter)
{
    m_services.manager.setFilter(filter);
    refreshTasks();
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

void CTollivarDlg::playSelected()
{
    m_selected->play();
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
