#pragma once

#include <QString>

namespace tollivar::platform {

/// Where the one running program is found.
struct InstancePlace {
    QString lock;   ///< for FileLock: held for the life of the running program
    QString socket; ///< for LocalMessageServer: listened on while its main window exists
};

/// In the log-in's own folder, which is emptied at its end; else in `dataDirectory`, which then
/// has to exist before the lock can be taken.
///
/// Threads: any; the environment must not change meanwhile.
[[nodiscard]] InstancePlace instancePlace(const QString &dataDirectory);

} // namespace tollivar::platform
