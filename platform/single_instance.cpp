#include "platform/single_instance.h"

#include "platform/paths.h"

namespace tollivar::platform {

InstancePlace instancePlace(const QString &dataDirectory)
{
    const QString runtime = runtimeFolder();
    const QString base = (runtime.isEmpty() ? dataDirectory : runtime) +
                         QStringLiteral("/Tollivar-5B0C1E27-93D4-4c8a-B1F6-2E7D90A4C315");
    return {.lock = base, .socket = base + QStringLiteral(".window/socket")};
}

} // namespace tollivar::platform
