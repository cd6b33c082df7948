#pragma once

#include <QString>

#include <memory>

namespace tollivar::platform {

/// Removes a file when the process is asked for its end (by a signal such as a polite kill or
/// Ctrl-C), and then ends it with status 143. Nothing helps when the process is killed outright.
///
/// Threads: any, at most one at a time in a process.
/// Errors:  none is told: a file that is not there, or cannot be removed, does not keep the process
///          from its end.
class RemoveOnEnd {
public:
    /// Paths longer than the system allows are not taken.
    explicit RemoveOnEnd(const QString &path);
    /// Puts the signals' former meaning back; the file stays.
    ~RemoveOnEnd();
    RemoveOnEnd(const RemoveOnEnd &) = delete;
    RemoveOnEnd &operator=(const RemoveOnEnd &) = delete;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace tollivar::platform
