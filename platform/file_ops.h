#pragma once

#include "platform/result.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <memory>
#include <span>

namespace tollivar::platform {

/// File-system helpers. Paths are absolute or relative to the current directory, in the program's
/// text form; a path with a NUL character names nothing.
///
/// Threads: any.

/// True also when the path cannot be inspected, so that it is never overwritten; false only when
/// it, or a folder on the way to it, is certainly not there.
[[nodiscard]] bool exists(const QString &path);

/// Makes an absolute folder and its missing parents.
/// Errors: AskUser for a path that is not absolute, or a level that cannot be made.
[[nodiscard]] Result<void> makeFolders(const QString &path);

/// Replaces the whole content of a file: written beside it, flushed to the disk, renamed. A reader
/// sees the old content or the new one.
/// Errors: AskUser; the file is then as it was.
[[nodiscard]] Result<void> replaceFile(const QString &path, const QByteArray &content);

/// What happens when the file to be created is already there.
enum class WhenThere {
    Refuse,  ///< the creation fails, also when another process was faster
    Truncate ///< its content goes; a symbolic link there is not followed but refused
};

/// A file open for writing; the destructor closes it and keeps what was written.
class WritableFile {
public:
    /// Errors: AskUser when it cannot be created, TryAgain when it was there and is to be refused.
    [[nodiscard]] static Result<std::unique_ptr<WritableFile>> create(const QString &path,
                                                                      WhenThere whenThere);
    ~WritableFile();
    WritableFile(const WritableFile &) = delete;
    WritableFile &operator=(const WritableFile &) = delete;

    /// Writes all bytes; blocks on the disk.
    /// Errors: AskUser, for whatever reason; part of them may be written.
    [[nodiscard]] Result<void> write(std::span<const std::byte> bytes);

private:
    explicit WritableFile(int handle);
    int m_handle;
};

} // namespace tollivar::platform
