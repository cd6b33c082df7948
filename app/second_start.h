#pragma once

#include "platform/file_lock.h"
#include "platform/single_instance.h"

#include <QByteArray>
#include <QStringList>

#include <memory>
#include <optional>

namespace tollivar::app {

/// What a process that starts has to do.
enum class StartOutcome {
    GoOn, ///< it is the first one
    End   ///< another one runs, and has been told what there was to tell
};

struct StartCheck {
    StartOutcome outcome = StartOutcome::GoOn;
    /// The right to be the one running program, to be held until the process ends. Null in a second
    /// start, and when there is no place for a lock: the program runs all the same then, and later
    /// starts do not find it.
    std::unique_ptr<platform::FileLock> claim;
};

/// Finds out whether this process is the first. A second one tells the first: with fewer than one
/// name and value among its arguments to show its window, else its whole command line. A first one
/// that is still starting, or already ending, hears nothing.
///
/// `arguments` begin with the program's name; the place's folder is made when it is missing. Blocks
/// for milliseconds, for at most 3 s when the first hangs.
[[nodiscard]] StartCheck checkSingleInstance(const platform::InstancePlace &place,
                                             const QStringList &arguments);

/// The message of a second start: its whole command line as UTF-16 text with its end mark.
[[nodiscard]] QByteArray commandLineMessage(const QStringList &arguments);

/// The arguments in such a message, for addressOf(); nothing when it is not one.
[[nodiscard]] std::optional<QStringList> readCommandLineMessage(const QByteArray &payload);

} // namespace tollivar::app
