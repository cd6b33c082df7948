#pragma once

#include "platform/result.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>

namespace tollivar::platform {

/// Where a child's standard output and error go.
enum class ChildOutput {
    OnePipe, ///< both into one pipe that read() empties
    Discard, ///< nowhere
};

/// What the system does to a child when the thread that started it ends.
enum class OrphanEnd {
    Kill, ///< ended at once
    Ask,  ///< asked politely: for a helper of ours that has something to put away first
};

struct ChildOptions {
    ChildOutput output = ChildOutput::OnePipe;
    /// If not empty, "NAME=value" entries that replace or join the parent's environment.
    QStringList environment{};
    OrphanEnd whenOrphaned = OrphanEnd::Kill;
};

/// One child program without a shell: started, read, asked for its end, ended.
///
/// The child never outlives us: it leads a session and process group of its own that kill() ends
/// whole, and it is ended, or asked for its end, by the system when the thread that started it ends, however that happens.
/// Its standard input is empty, and of our descriptors it inherits none but its output.
///
/// Threads: belongs to the thread that started it, which must live as long as the child.
/// Owns:    the child and the pipe; the destructor ends what is left of the group and reaps.
class ChildProcess {
public:
    /// Starts `commandLine`: program name and arguments in one text, split by
    /// splitCommandLine(). The program is found by findProgram(). Blocks until the program has
    /// taken over the new process.
    /// Errors: AskUser when the program cannot be found or started, TryAgain when the system is
    ///         short of processes or descriptors; nothing is left open then.
    [[nodiscard]] static Result<std::unique_ptr<ChildProcess>>
    start(const QString &commandLine, const ChildOptions &options = {});

    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    /// What the pipe holds now, at most `buffer.size()` bytes; 0 when nothing waits or the pipe is
    /// done. Never blocks.
    [[nodiscard]] std::size_t read(std::span<std::byte> buffer);
    /// Blocks up to `limit` until read() has something to give or the pipe is done: true then.
    /// After a true, a read() of 0 means that no output will come any more.
    [[nodiscard]] bool waitForOutput(std::chrono::milliseconds limit);
    /// Never blocks.
    [[nodiscard]] bool hasEnded();
    /// The exit status once it has ended; 128 + signal when a signal ended it.
    [[nodiscard]] std::optional<int> exitCode();
    /// Ends the whole process group at once, also what a child that has ended left behind in it,
    /// and reaps the child. Output that waits can still be read. Blocks for milliseconds.
    void kill();
    [[nodiscard]] qint64 processId() const;

private:
    struct Private;
    explicit ChildProcess(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};

} // namespace tollivar::platform
