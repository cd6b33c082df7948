#pragma once

#include "platform/local_messages.h"

#include <QByteArray>

#include <memory>

namespace tollivar::ui {
class CTollivarDlg;
}

namespace tollivar::app {

/// What later starts, the terminal program and the capture browser hand over to the program that
/// runs: it comes to the front, or takes addresses, captured texts and tasks.
///
/// Threads: the main thread.
/// Owns:    the socket it listens on, until it is destroyed; the window is borrowed.
/// Errors:  without a socket a warning is logged and nothing arrives; what cannot be read is logged
///          and dropped.
class HandedOver {
public:
    HandedOver(ui::CTollivarDlg &window, const QString &socket);

private:
    void take(platform::CopyDataId id, const QByteArray &payload);
    void addTasks(const QByteArray &requests);

    ui::CTollivarDlg &m_window;
    std::unique_ptr<platform::LocalMessageServer> m_server;
};

} // namespace tollivar::app
