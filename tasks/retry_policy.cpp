#include "tasks/retry_policy.h"

#include "tasks/api/download_mode.h"

namespace tollivar::tasks {

int RetryPolicy::methodOfRetry(const TaskInfo &task, int attempt) const
{
    const bool isDirect = task.nModeLow == static_cast<int>(DownloadMethod::Direct);
    if (!isDirect || !switchesMode || maximumRetries < 1 || attempt <= 1) {
        return task.nModeLow;
    }
    const bool isFlash = task.strFileType.compare(u".SWF", Qt::CaseInsensitive) == 0;
    return static_cast<int>(isFlash ? DownloadMethod::Flash : DownloadMethod::Video);
}

} // namespace tollivar::tasks
