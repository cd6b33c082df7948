#pragma once

#include "fetch/step_result.h"
#include "platform/file_ops.h"
#include "tasks/api/task_worker.h"

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace tollivar::fetch {

/// The file that a run writes: named, announced, filled.
///
/// Small pieces are gathered and written in larger slices, at the latest when the file is closed.
///
/// Threads: the worker's.
/// Owns:    the open file; the destructor writes what is left and closes it.
/// Errors:  a failed write ends all further writing: a full disk is not tried again for each piece.
class OutputFile {
public:
    /// Creates the file of the worker's record (`task` is the run's copy of it), reusing the name
    /// when an earlier run made it; notes the name that was free, stores the record and posts
    /// FileCreated and, for a changed name, RecordChanged. Null when no file can be created; the
    /// worker's failure says so.
    [[nodiscard]] static std::unique_ptr<OutputFile> create(tasks::TaskWorker &worker,
                                                            tasks::TaskInfo &task);
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    void write(std::span<const std::byte> bytes);
    /// False once a slice could not be written.
    [[nodiscard]] bool isIntact() const { return m_isIntact; }

private:
    explicit OutputFile(std::unique_ptr<platform::WritableFile> file);
    void flush();

    std::unique_ptr<platform::WritableFile> m_file;
    std::vector<std::byte> m_gathered;
    bool m_isIntact = true;
};

} // namespace tollivar::fetch
