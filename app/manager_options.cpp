#include "app/manager_options.h"

#include <algorithm>

namespace tollivar::app {

tasks::TaskManagerOptions managerOptions(const settings::SettingsStore &store)
{
    settings::CGeneralOptions options(store);
    options.Load();
    return managerOptions(options);
}

tasks::TaskManagerOptions managerOptions(const settings::CGeneralOptions &options)
{
    // Without a slot nothing would ever run.
    return {.maximumDownloads = std::max(options.m_nMaxSimDownloads, 1),
            .retry = {.maximumRetries = options.m_nMaxRetry,
                      .switchesMode = options.m_bAutoParseOriUrl}};
}

} // namespace tollivar::app
