#pragma once

#include "platform/result.h"

#include <QString>

#include <memory>

namespace tollivar::platform {

/// An exclusive lock on a file, held against all other processes and other locks of this one.
///
/// Threads: any one thread at a time.
/// Owns:    the open file. The system frees the lock when the object or the process ends, however
///          that happens; the file itself stays, because removing it would let two holders in.
class FileLock {
public:
    /// Takes the lock at once, making the file when it is missing. Never waits.
    ///
    /// Errors: TryAgain when somebody else holds the lock; AskUser when the file cannot be made or
    ///         opened.
    [[nodiscard]] static Result<std::unique_ptr<FileLock>> take(const QString &path);

    ~FileLock();
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

private:
    struct Private;
    explicit FileLock(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};

} // namespace tollivar::platform
