#pragma once

#include "app/data_directory.h"
#include "platform/message_port.h"
#include "ui/dialogs/window_texts.h"
#include "update/update_checker.h"

#include <QDateTime>

#include <memory>

class QWidget;

namespace tollivar::ui {
class CheckingDialog;
}

namespace tollivar::app {

/// Checks for updates, and what a person sees of it. Nothing is downloaded but the answer; the page
/// of a new version opens in the browser.
///
/// Threads: the main thread.
/// Owns:    the checker, and the window that stands while somebody waits for it.
class Updates {
public:
    /// Windows belong to `owner`, which is borrowed.
    Updates(QWidget &owner, const DataPaths &paths, ui::WindowTexts texts);
    ~Updates();
    Updates(const Updates &) = delete;
    Updates &operator=(const Updates &) = delete;

    /// At a start: checks when the stored mode asks for it.
    void checkIfDue(int mode);
    /// The mode has changed: takes back what it no longer wants.
    void setMode(int mode);
    /// Somebody asks.
    void checkNow();

private:
    void take(const platform::AppMessage &message);
    void ask(update::UpdateResult result);

    QWidget &m_owner;
    ui::WindowTexts m_texts;
    /// Read before there is a checker, which has the file to itself.
    QDateTime m_lastCheck;
    platform::AppMessageInbox m_inbox;
    std::unique_ptr<ui::CheckingDialog> m_checking;
    /// Last: it must end before what it tells is gone.
    std::unique_ptr<update::UpdateChecker> m_checker;
};

} // namespace tollivar::app
