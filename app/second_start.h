#pragma once

#include "platform/file_lock.h"
#include "platform/local_messages.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace tollivar::app {

/// Where the one running program is found: a lock that it holds for life, and a socket that it
/// listens on while its main window exists.
struct InstancePlace {
    QString lock;
    QString socket;
};

/// In the log-in's own folder, else in `dataDirectory`.
[[nodiscard]] InstancePlace instancePlace(const QString &dataDirectory);

/// The right to be the one running program; null when this start is not the first. In that case
/// the first one was told: with fewer than one name and value among the arguments to show its
/// window, else the whole command line. A first one that is still starting, or already ending,
/// hears nothing.
///
/// `arguments` begin with the program's name. Blocks for at most 3 s, when the first hangs.
[[nodiscard]] std::unique_ptr<platform::FileLock> becomeFirst(const InstancePlace &place,
                                                              const QStringList &arguments);

/// The arguments in a second start's message; nothing when it is not one.
[[nodiscard]] std::optional<QStringList> readCommandLineMessage(const QByteArray &payload);

} // namespace tollivar::app
