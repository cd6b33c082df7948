#pragma once

#include "convert/profile_table.h"
#include "settings/settings_store.h"
#include "tasks/api/download_mode.h"
#include "tasks/api/task_info.h"
#include "ui/dialog/ui_lib_dialog.h"
#include "ui/dialogs/window_texts.h"

#include <QString>

namespace tollivar::ui {

/// Asks for a new download: address, folder, name, mode, and behind "More" how the file is to be
/// converted.
///
/// Threads: the main thread.
/// Owns:    the task that it describes; owner, settings and texts are borrowed and must outlive it.
/// States:  exec() gives Accepted or Rejected; task() is complete after Accepted.
class CAddTaskDlg final : public CUILibDialog {
    Q_OBJECT

public:
    /// What the caller knows before the person is asked. A file name means that the media itself
    /// is known: address and mode cannot be changed then.
    struct Preset {
        QString address{};
        QString fileName{};
    };

    CAddTaskDlg(QWidget *owner, const settings::SettingsStore &settings, const WindowTexts &texts,
                const Preset &preset);

    /// The task as it was described.
    [[nodiscard]] const tasks::TaskInfo &task() const { return m_task; }
    /// Puts another address into the open dialog; false when it has one that cannot be changed.
    bool setAddress(const QString &address);

    void Notify(const DuiLib::SkinEvent &event) override;

private:
    void handleClick(const QString &name);
    void handleChoice(const QString &name);
    void lockToDirectFile(const QString &fileName);
    void fillProfiles();
    void applyProfile(const QString &name);
    void checkVideoSite();
    void showMore(bool isExpanded);
    void chooseFolder();
    void accept() override;
    /// Reads the fields into the task; the reason when something in them cannot be used.
    [[nodiscard]] QString readFields();
    void readMode();

    const settings::SettingsStore &m_settings;
    const WindowTexts &m_texts;
    convert::ProfileTable m_profiles;
    tasks::TaskInfo m_task;
    bool m_isExpanded = false;
};

} // namespace tollivar::ui
