#include "app/window/handed_over.h"

#include "app/command_line.h"
#include "app/second_start.h"
#include "app/task_request.h"
#include "ui/main_window/tollivar_dlg.h"

namespace tollivar::app {

using platform::CopyDataId;

HandedOver::HandedOver(ui::CTollivarDlg &window, const QString &socket) : m_window(window)
{
    auto server = platform::LocalMessageServer::listen(
        socket, [this](CopyDataId id, const QByteArray &payload) { take(id, payload); });
    if (server) {
        m_server = std::move(*server);
    } else {
        qWarning("later starts cannot hand anything over: %s", qPrintable(server.error().text));
    }
}

void HandedOver::take(CopyDataId id, const QByteArray &payload)
{
    switch (id) {
    case CopyDataId::BringToFront:
        m_window.showAndActivate();
        break;
    case CopyDataId::CommandLine:
        if (const auto arguments = readCommandLineMessage(payload)) {
            m_window.intake().addAddress(addressOf(*arguments).value_or(QString()));
        }
        break;
    case CopyDataId::CapturedText:
        m_window.intake().addCapturedText(QString::fromUtf8(payload));
        break;
    case CopyDataId::AddTasks:
        addTasks(payload);
        break;
    }
}

void HandedOver::addTasks(const QByteArray &requests)
{
    const auto decoded = decodeTaskRequests(requests);
    if (!decoded) {
        qWarning("tasks were not taken over: %s", qPrintable(decoded.error().text));
        return;
    }
    for (const TaskRequest &request : *decoded) {
        if (const auto task = newTask(request)) {
            m_window.intake().addNewTask(*task);
        } else {
            qWarning("a task was not taken over: %s", qPrintable(task.error().text));
        }
    }
}

} // namespace tollivar::app
