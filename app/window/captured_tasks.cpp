#include "app/window/captured_tasks.h"

#include "fetch/page_resolver.h"
#include "fetch/parser_answer.h"
#include "tasks/api/download_mode.h"

namespace tollivar::app {

std::vector<ui::CapturedMedia> readCapturedMedia(const QString &text)
{
    std::vector<ui::CapturedMedia> media;
    for (const fetch::AnswerRecord &record : fetch::readAnswer(text)) {
        tasks::TaskInfo task;
        fetch::applyAnswer(record, task);
        if (task.strDownloadUrl.isEmpty()) {
            continue;
        }
        task.strOriURL = record.pageUrl.isEmpty() ? record.referer : record.pageUrl;
        if (task.strOriURL.isEmpty()) {
            task.strOriURL = task.strDownloadUrl;
        }
        task.nModeLow = static_cast<int>(tasks::DownloadMethod::Direct);
        media.push_back({std::move(task), record.title});
    }
    return media;
}

} // namespace tollivar::app
