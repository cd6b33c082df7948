#pragma once

#include "tasks/api/task_info.h"
#include "tasks/api/task_progress.h"

#include <QString>

namespace tollivar::app {

/// One running download as one line: percent, sizes, speed, time left, name. Parts that are not
/// known are left out; `columns` cuts the name, never the figures.
[[nodiscard]] QString progressLine(const QString &status, const tasks::TaskInfo &task,
                                   const tasks::TaskProgress &progress, int columns);

} // namespace tollivar::app
