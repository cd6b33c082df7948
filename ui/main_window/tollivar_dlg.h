#pragma once

#include "platform/message_port.h"
#include "tasks/api/task_event.h"
#include "ui/dialog/ui_lib_dialog.h"
#include "ui/main_window/task_commands.h"
#include "ui/main_window/total_progress.h"
#include "ui/main_window/window_services.h"
#include "ui/task_list/list_ctrl_ex.h"
#include "ui/tray/tray_icon.h"

#include <QPointer>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class QTimer;
class QToolButton;

namespace tollivar::ui {

class CAddTaskDlg;
class MainMenus;

/// Where an offered address comes from.
enum class AddressOrigin { Dropped, Clipboard };

/// The program's one main window: the place where commands, messages and task events meet. It holds
/// no task data; the manager does.
///
/// Closing it hides it to the tray; only the exit commands end the program, by exitWanted().
///
/// Threads: the main thread; other threads reach it through port().
/// Owns:    the list, the tray icon and every dialog it opens.
class CTollivarDlg final : public CUILibDialog, private TaskRows {
    Q_OBJECT

public:
    explicit CTollivarDlg(const WindowServices &services);
    ~CTollivarDlg() override;
    CTollivarDlg(const CTollivarDlg &) = delete;
    CTollivarDlg &operator=(const CTollivarDlg &) = delete;

    /// Where other threads and the window itself post the messages that are its own.
    [[nodiscard]] platform::AppMessagePort port() const;

    /// Shows the window, or leaves it in the tray until it is wanted.
    enum class Appearance { Shown, Hidden };
    void start(Appearance appearance);

    /// Called after each task event, when manager and database have seen it.
    void onTaskEvent(std::uint32_t taskId, tasks::TaskEventCode code);
    /// Something about a task has changed that no event tells.
    void redrawTask(std::uint32_t taskId);
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
    /// Does what the entry of a menu does.
    void runCommand(int command);
    /// What the program itself put on the clipboard last.
    [[nodiscard]] QString copiedText() const { return m_copiedText; }
    /// Comes to the front, wherever it was.
    void showAndActivate();
    /// Takes everything off the screen, for good.
    void leaveScreen();

    void Notify(const DuiLib::SkinEvent &event) override;

    /// Takes over options that were changed.
    void applyOptions();
    /// Shows every text in the current language.
    void applyLanguage();

Q_SIGNALS:
    void exitWanted();
    void taskCompleted(const tollivar::tasks::TaskInfo &task, std::uint32_t taskId);
    /// A page gave no media, and is not tried again.
    void pageFailed();
    void settingsWanted();
    void updateCheckWanted();
    void helpWanted();
    void homePageWanted();
    void playerHelpWanted();
    void dropZoneToggled();
    /// The capture browser; with `asks` each medium is offered, else it becomes a task at once.
    void browserWanted(bool asks);
    void webPageWanted(const QString &address);
    /// With the companion player; the path is empty when no task is selected.
    void playerWanted(const QString &path);
    /// With the system's own program for the file.
    void fileWanted(const QString &path);
    /// The folder, with the file selected if it is there.
    void folderWanted(const QString &folder, const QString &path);
    /// All in one: whoever cannot convert one says so once.
    void conversionWanted(const std::vector<tollivar::tasks::TaskInfo> &tasks);
    /// A finished task's file, to the options that its record now holds.
    void profileWanted(const tollivar::tasks::TaskInfo &task, std::uint32_t taskId);
    void activatedByPerson();
    /// It has become a mere icon, or is one no longer; in the tray it is none.
    void minimisedChanged(bool isMinimised);
    /// From 0 to 1; nothing while no task runs or waits.
    void totalProgressChanged(std::optional<double> share);

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void reject() override;

private:
    enum class DialogResult : int { Cancelled = 0, Accepted = 1, AlreadyOpen = 2 };

    // The rows that commands work on.
    [[nodiscard]] std::vector<int> selectedRows() const override;
    void selectRows(const std::vector<int> &rows) override;
    void redrawRow(int row) override;
    void refreshRows() override;

    void bindList();
    void bindTray();
    void bindKeys();
    void handle(const platform::AppMessage &message);
    void handleClick(const QString &name);
    void runOnSelected(int command);
    void takeCapturedTexts();
    void addCaptured(const CapturedMedia &media);
    /// What the person chose; nothing when the medium is not wanted.
    [[nodiscard]] std::optional<tasks::TaskInfo> askAboutCaptured(const CapturedMedia &media);
    void openBrowser();
    void storeCaptured(const CapturedMedia &media, const tasks::TaskInfo &chosen);
    void addPendingAddress();
    void addTask();
    DialogResult openAddTask(const QString &address);
    void startSelected();
    void stopSelected();
    /// Of the rows' finished tasks; nobody could stop them once the rows are gone.
    void stopConversions(const std::vector<int> &rows);
    void removeSelected();
    void clearCompleted();
    void setFilter(tasks::TaskFilter filter);
    void showAll();
    void showDownloading();
    void showDownloaded();
    void playSelected();
    void copyAddresses(QString tasks::TaskInfo::*address);
    [[nodiscard]] std::vector<tasks::TaskInfo> selectedTasks() const;
    /// What the selected tasks can be converted to: nothing while one is not finished.
    [[nodiscard]] QStringList profilesForSelected() const;
    void convertSelected(const QString &profile);
    void copyDetails();
    void copyText(const QString &copied);
    void showHelpMenu();
    void showAbout();
    void showFlashNote();
    void refreshCaptions();
    void refreshTotals();
    void tellIfMinimised();
    void closeToTray();
    void toggleWindow();
    void showBalloonOnce();
    [[nodiscard]] QString text(const char16_t *id) const;
    [[nodiscard]] QToolButton &button(QLatin1StringView name) const;

    WindowServices m_services;
    TaskCommands m_commands;
    platform::AppMessageInbox m_inbox;
    CListCtrlEx *m_list = nullptr;
    std::unique_ptr<MainMenus> m_menus;
    std::unique_ptr<TrayIcon> m_tray;
    QTimer *m_totals = nullptr;
    TotalProgress m_total;
    std::optional<double> m_share;
    QPointer<CAddTaskDlg> m_addTask;
    /// In the order in which they came; each has its message.
    QStringList m_pendingAddresses;
    QStringList m_capturedTexts;
    /// Offered while the open dialog could take no other; offered again when it has closed.
    QStringList m_keptAddresses;
    QString m_copiedText;
    bool m_minimisesAfterCapture = false;
    bool m_isMinimised = false;
    bool m_hasToldAboutTray = false;
};

} // namespace tollivar::ui
