#pragma once

#include "settings/general_options.h"
#include "settings/settings_store.h"
#include "tasks/task_manager.h"

namespace tollivar::app {

/// How the manager runs tasks, by the person's options.
[[nodiscard]] tasks::TaskManagerOptions managerOptions(const settings::CGeneralOptions &options);
/// The same by those that are stored.
[[nodiscard]] tasks::TaskManagerOptions managerOptions(const settings::SettingsStore &store);

} // namespace tollivar::app
