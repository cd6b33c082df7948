#pragma once

#include "settings/settings_store.h"
#include "tasks/task_manager.h"

namespace tollivar::app {

/// How the manager runs tasks, by the person's options.
[[nodiscard]] tasks::TaskManagerOptions managerOptions(const settings::SettingsStore &store);

} // namespace tollivar::app
