#pragma once

#include "tasks/api/task_info.h"
#include "tasks/task_manager.h"
#include "ui/task_list/list_ctrl_ex.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <vector>

namespace tollivar::ui {

/// What the list's menu does with the selected tasks: play, find, open, copy and convert them. What
/// leaves the program is asked for by a signal.
///
/// Threads: the main thread.
/// Owns:    nothing; list and manager must outlive it.
class SelectedTasks final : public QObject {
    Q_OBJECT

public:
    SelectedTasks(const CListCtrlEx &list, const tasks::TaskManager &manager, TextLookup text);

    /// Does what the entry of the list's menu does; nothing for other commands.
    void run(int command);
    /// Whether the entry of the list's menu could do anything with them; true for other commands.
    [[nodiscard]] bool can(int command) const;
    void play();
    /// Plays that row's task, whichever are selected.
    void playRow(int row);
    /// Whether the Space key means Stop: one of them runs, or waits to.
    [[nodiscard]] bool anyIsActive() const;
    /// What they can be converted to: nothing while one is not finished.
    [[nodiscard]] QStringList profiles() const;
    void convertTo(const QString &profile);
    /// What a question about them needs, to the clipboard.
    void copyDetails();
    [[nodiscard]] bool areThere() const;

Q_SIGNALS:
    /// With the companion player; the path is empty when no task is selected.
    void playerWanted(const QString &path);
    /// With the system's own program for the file.
    void fileWanted(const QString &path);
    /// The folder, with the file selected if it is there.
    void folderWanted(const QString &path);
    void webPageWanted(const QString &address);
    /// All in one: whoever cannot convert one says so once.
    void conversionWanted(const std::vector<tollivar::tasks::TaskInfo> &tasks);
    /// A finished task's file, to the options that its record now holds.
    void profileWanted(const tollivar::tasks::TaskInfo &task, std::uint32_t taskId);
    /// Goes to the clipboard, unless it is empty.
    void copied(const QString &text);

private:
    [[nodiscard]] std::vector<const tasks::TaskWorker *> workers() const;
    [[nodiscard]] std::vector<tasks::TaskInfo> records() const;
    void runOn(int command, const std::vector<tasks::TaskInfo> &tasks);
    void copyAddresses(QString tasks::TaskInfo::*address);
    void copy(const QString &text);

    const CListCtrlEx &m_list;
    const tasks::TaskManager &m_manager;
    TextLookup m_text;
};

} // namespace tollivar::ui
