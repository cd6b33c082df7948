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
/// Small pieces are gathered and written in slices of a fixed size, the last when it is finished.
///
/// Threads: the worker's.
/// Owns:    the open file; the destructor finishes and closes it.
/// States:  each room() is followed by one filled().
/// Errors:  a failed write is logged and ends all further writing: a full disk is not tried again
///          for each piece.
class OutputFile {
public:
    /// The largest piece.
    static constexpr std::size_t kMaximumPiece = 64UL * 1024;

    /// Creates the file of the worker's record (`task` is the run's copy of it), reusing the name
    /// when an earlier run made it; notes the name that was free, stores the record and posts
    /// FileCreated and, for a changed name, RecordChanged. Null when no file can be created; the
    /// worker's failure says so.
    [[nodiscard]] static std::unique_ptr<OutputFile> create(tasks::TaskWorker &worker,
                                                            tasks::TaskInfo &task);
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    /// Where the next piece goes, of at most `size` bytes.
    [[nodiscard]] std::span<std::byte> room(std::size_t size);
    /// So many bytes of the room hold the piece.
    void filled(std::size_t bytes);
    /// Writes what is left; true when every piece was written.
    bool finish();
    /// False once something could not be written.
    [[nodiscard]] bool isIntact() const { return m_isIntact; }

private:
    explicit OutputFile(std::unique_ptr<platform::WritableFile> file);
    void write(std::size_t bytes);

    std::unique_ptr<platform::WritableFile> m_file;
    std::vector<std::byte> m_gathered;
    std::size_t m_used = 0;
    bool m_isIntact = true;
};

} // namespace tollivar::fetch
