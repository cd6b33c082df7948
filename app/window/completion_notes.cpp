#include "app/window/completion_notes.h"

#include "platform/paths.h"
#include "platform/quiet_time.h"
#include "ui/notify/task_notify_dlg.h"

#include <utility>

namespace tollivar::app {

using namespace Qt::StringLiterals;
using ui::CTaskNotifyDlg;

CompletionNotes::CompletionNotes(ui::DialogTexts texts) : m_texts(std::move(texts)) {}

void CompletionNotes::tell(const tasks::TaskInfo &task)
{
    platform::askForQuietTime(this, [this, task](platform::Notices notices) {
        if (notices == platform::Notices::Welcome) {
            show(task);
        }
    });
}

void CompletionNotes::show(const tasks::TaskInfo &task)
{
    m_sound.play(platform::programDirectory() + u"/sound/sound.wav"_s);
    auto *popup =
        new CTaskNotifyDlg({task.strOutputFolder, task.strOutputName, task.strFileType}, m_texts);
    connect(popup, &CTaskNotifyDlg::playWanted, this, &CompletionNotes::playWanted);
    connect(popup, &CTaskNotifyDlg::folderWanted, this, &CompletionNotes::folderWanted);
    connect(popup, &CTaskNotifyDlg::conversionWanted, this, &CompletionNotes::conversionWanted);
    popup->showFor({});
}

void CompletionNotes::closeAll()
{
    CTaskNotifyDlg::closeAll();
}

} // namespace tollivar::app
