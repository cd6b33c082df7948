#pragma once

#include "platform/message_port.h"
#include "ui/main_window/captured_media.h"
#include "ui/main_window/window_services.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <optional>

class QMimeData;
class QWidget;

namespace tollivar::ui {

class CAddTaskDlg;

/// Where an offered address comes from.
enum class AddressOrigin { Dropped, Clipboard };

/// Where addresses and the capture browser's texts become tasks: at once, or after the add-task
/// dialog. While one of its dialogs is open more may come; none is lost.
///
/// Threads: the main thread.
/// Owns:    the dialog while one is open; window and services are borrowed.
class AddressIntake final : public QObject {
    Q_OBJECT

public:
    /// Dialogs belong to `window`.
    AddressIntake(QWidget &window, const WindowServices &services);
    ~AddressIntake() override;
    AddressIntake(const AddressIntake &) = delete;
    AddressIntake &operator=(const AddressIntake &) = delete;

    /// An address from a command line: becomes a task without a question.
    void addAddress(const QString &address);
    /// Stores a complete record as a new task and starts or queues it.
    void addNewTask(const tasks::TaskInfo &task);
    /// A record of the capture browser that becomes a task without a question, in the last folder.
    void addCapturedRecord(const QString &record);
    /// A text of the capture browser: each medium in it is offered as a task.
    void addCapturedText(const QString &text);
    /// An address that is ready: offered as a task, unless we copied it ourselves.
    void offerAddress(const QString &address, AddressOrigin origin);
    /// The empty dialog, or the one that is open.
    void askForAddress();

    /// What the program itself put on the clipboard last.
    void setCopiedText(const QString &copied) { m_copiedText = copied; }
    /// Whether the window makes room once something was accepted.
    void setMinimisesAfterwards(bool does) { m_minimisesAfterwards = does; }

Q_SIGNALS:
    /// The window is needed at the front, at once.
    void windowWanted();
    void tasksAdded();

private:
    enum class DialogResult { Cancelled, Accepted, AlreadyOpen };

    void handle(const platform::AppMessage &message);
    void addPendingAddress();
    void takeCapturedTexts();
    void addCaptured(const CapturedMedia &media);
    /// What the person chose; nothing when the medium is not wanted.
    [[nodiscard]] std::optional<tasks::TaskInfo> askAboutCaptured(const CapturedMedia &media);
    void storeCaptured(const CapturedMedia &media, const tasks::TaskInfo &chosen);
    DialogResult openAddTask(const QString &address);
    void makeRoom();

    QWidget &m_window;
    const WindowServices &m_services;
    platform::AppMessageInbox m_inbox;
    QPointer<CAddTaskDlg> m_dialog;
    /// In the order in which they came; each has its message.
    QStringList m_pendingAddresses;
    QStringList m_capturedTexts;
    /// Offered while the open dialog could take no other; offered again when it has closed.
    QStringList m_keptAddresses;
    QString m_copiedText;
    bool m_minimisesAfterwards = false;
};

/// The address in data that was dropped on the window or pasted into it; empty for files and for
/// what is no text. A link that comes as an address alone, without a text, is one: what a browser
/// drags into the window is meant for it. The drop zone, which floats over other programs' windows
/// and is hit by chance, takes only what comes as text.
[[nodiscard]] QString addressIn(const QMimeData &data);

} // namespace tollivar::ui
