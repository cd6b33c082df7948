#pragma once

#include "platform/sound.h"
#include "tasks/api/task_info.h"
#include "ui/dialog/dialog_texts.h"

#include <QObject>
#include <QString>

namespace tollivar::app {

/// Tells of finished downloads by sound and popup, unless the person does not want to be disturbed.
///
/// Threads: the main thread.
/// Owns:    the sound; each popup is its own.
class CompletionNotes final : public QObject {
    Q_OBJECT

public:
    explicit CompletionNotes(ui::DialogTexts texts);

    /// The desktop is asked first, so that the note may come a moment later.
    void tell(const tasks::TaskInfo &task);
    static void closeAll();

Q_SIGNALS:
    // The buttons of a popup.
    void playWanted(const QString &path);
    void folderWanted(const QString &path);
    void conversionWanted(const QString &path);

private:
    void show(const tasks::TaskInfo &task);

    ui::DialogTexts m_texts;
    platform::Sound m_sound;
};

} // namespace tollivar::app
