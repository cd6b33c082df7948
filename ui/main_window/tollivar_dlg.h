#pragma once

#include "platform/message_port.h"
#include "tasks/api/task_event.h"
#include "ui/dialog/ui_lib_dialog.h"
#include "ui/main_window/address_intake.h"
#include "ui/main_window/selected_tasks.h"
#include "ui/main_window/task_commands.h"
#include "ui/main_window/totals_line.h"
#include "ui/main_window/window_services.h"
#include "ui/task_list/list_ctrl_ex.h"
#include "ui/tray/tray_icon.h"
#include "ui/tray/tray_wait.h"

#include <QString>

#include <memory>

class QToolButton;

namespace tollivar::ui {

class MainMenus;
class WindowMemory;

/// The program's one main window: the place where commands, messages and task events meet. It holds
/// no task data; the manager does. What comes in goes to intake(), what is done with the selected
/// tasks leaves by selected().
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

    /// Shows the window, or leaves it in the tray until it is wanted. Where no tray comes up either,
    /// it is shown all the same, some seconds later: nobody could find it otherwise.
    enum class Appearance { Shown, Hidden };
    void start(Appearance appearance);

    /// Called after each task event, when manager and database have seen it.
    void onTaskEvent(std::uint32_t taskId, tasks::TaskEventCode code);
    /// Something about a task has changed that no event tells.
    void redrawTask(std::uint32_t taskId);
    /// Where addresses and captured texts go that are to become tasks.
    [[nodiscard]] AddressIntake &intake() { return m_intake; }
    [[nodiscard]] SelectedTasks &selected() { return *m_selected; }
    [[nodiscard]] const TotalsLine &totals() const { return *m_totals; }
    /// Does what the entry of a menu does.
    void runCommand(int command);
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
    void activatedByPerson();
    /// It has become a mere icon, or is one no longer; in the tray it is none.
    void minimisedChanged(bool isMinimised);

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void reject() override;

private:
    // The rows that commands work on.
    [[nodiscard]] std::vector<int> selectedRows() const override;
    void selectRows(const std::vector<int> &rows) override;
    void redrawRow(int row) override;
    void refreshRows() override;

    void bindList();
    void bindIntake();
    void bindMenus();
    void bindTray();
    void bindKeys();
    void giveListTheKeyboard();
    void handle(const platform::AppMessage &message);
    void handleClick(const QString &name);
    void openBrowser();
    void addTask();
    void startSelected();
    void stopSelected();
    void toggleSelected();
    void removeSelected();
    void clearCompleted();
    void setFilter(tasks::TaskFilter filter);
    void showAll();
    void showDownloading();
    void showDownloaded();
    void playSelected();
    void showHelpMenu();
    void showAbout();
    void showFlashNote();
    void refreshCaptions();
    /// Greys out the buttons that could do nothing to the selected tasks.
    void enableButtons();
    void refreshTasks();
    void tellIfMinimised();
    void closeToTray();
    void toggleWindow();
    void showBalloonOnce();
    [[nodiscard]] QString text(const char16_t *id) const;
    [[nodiscard]] QToolButton &button(QLatin1StringView name) const;

    WindowServices m_services;
    TaskCommands m_commands;
    AddressIntake m_intake;
    platform::AppMessageInbox m_inbox;
    CListCtrlEx *m_list = nullptr;
    std::unique_ptr<SelectedTasks> m_selected;
    std::unique_ptr<MainMenus> m_menus;
    std::unique_ptr<TrayIcon> m_tray;
    std::unique_ptr<TrayWait> m_trayWait; ///< after a hidden start, until a tray is there
    std::unique_ptr<TotalsLine> m_totals;
    std::unique_ptr<WindowMemory> m_memory;
    bool m_isMinimised = false;
    bool m_hasToldAboutTray = false;
};

} // namespace tollivar::ui
