#pragma once

#include "platform/file_ops.h"
#include "platform/result.h"

#include <QString>

#include <memory>

namespace tollivar::fetch {

/// How many names are tried before giving up.
inline constexpr int kMaximumNameTries = 10'000;

/// Whether the file is one that this task made before.
enum class FileReuse {
    No,  ///< an existing file is never overwritten; "name(0)", "name(1)" … are tried instead
    Yes, ///< the same name is used again and the file truncated
};

/// A file of its own, just created.
struct UniqueFile {
    std::unique_ptr<platform::WritableFile> file;
    QString path;
    QString baseName; ///< what the task's output name has to become
};

/// Creates the file at `path`, or at the first alternative name that can be created. Two callers
/// at the same moment get different files. An alternative keeps the ending `type` whole, which may
/// hold several dots; without one, what stands from the last dot on.
///
/// Threads: any.
/// Errors:  AskUser when none of the names could be created.
[[nodiscard]] platform::Result<UniqueFile> createUniqueFile(const QString &path, FileReuse reuse,
                                                            const QString &type = {});

/// Whether freePath() also takes the name by creating an empty file.
enum class TakePath { No, Yes };

/// `path`, or the first alternative to it that does not exist.
/// Errors: AskUser when no name is free or can be taken.
[[nodiscard]] platform::Result<QString> freePath(const QString &path, TakePath take);

} // namespace tollivar::fetch
