#pragma once

#include "tasks/api/task_info.h"

#include <QString>

namespace tollivar::ui {

/// One medium that the capture browser handed over: a task but for its folder and name.
struct CapturedMedia {
    tasks::TaskInfo task;
    QString title;
};

/// The folder inside `folder` in which media of that page are kept, with its trailing separator:
/// named after the title. On a broadcaster's pages a number and a dash in front of it are left out.
[[nodiscard]] QString folderOfCaptured(const QString &folder, const QString &title,
                                       const QString &pageAddress);

} // namespace tollivar::ui
