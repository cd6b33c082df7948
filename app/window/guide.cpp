#include "app/window/guide.h"

#include "platform/build_config.h"
#include "platform/open_external.h"

namespace tollivar::app {

bool openGuide(const QString &directory)
{
    return platform::openPath(directory + QStringLiteral("/help/index.html")) ||
           platform::openAddress(QString(platform::build::kHelpPage));
}

} // namespace tollivar::app
