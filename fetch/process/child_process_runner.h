#pragma once

#include "platform/child_process.h"

#include <QString>

#include <cstdint>
#include <memory>

namespace tollivar::fetch {

/// Runs one console helper hidden and lets the caller poll its joined output. The caller owns the
/// polling loop and its own stop test: nothing here waits, but readAll().
///
/// Threads: belongs to the thread that starts the helper.
/// Owns:    the helper and its pipe until close(); the helper is ended when the runner dies.
class ChildProcessRunner {
public:
    ChildProcessRunner();
    ~ChildProcessRunner();
    ChildProcessRunner(const ChildProcessRunner &) = delete;
    ChildProcessRunner &operator=(const ChildProcessRunner &) = delete;

    /// Starts the whole command line, the program's name first. False when it could not be started;
    /// nothing is left open then. The reason goes to the log.
    [[nodiscard]] bool start(const QString &commandLine,
                             platform::OrphanEnd whenOrphaned = platform::OrphanEnd::Kill);

    /// Replaces `chunk` by what waits in the pipe, at most 2,047 bytes; false when nothing does.
    /// A character that is cut by the limit is converted in two halves.
    [[nodiscard]] bool read(QString &chunk);

    /// Appends every chunk; true once the helper has ended. Output that comes between the last empty
    /// read and the end stays in the pipe. Spins: for a helper that ends quickly.
    bool readAll(QString &text);

    /// True also when none was started. False with waiting output means only that more may come.
    [[nodiscard]] bool hasEnded();
    /// True, and the code stored, once the helper has ended; 0 for one that kill() ended, 128 and
    /// the signal's number for one that another signal ended.
    [[nodiscard]] bool exitCode(std::uint32_t &code);
    /// Ends the helper and whatever it started. What the pipe holds can still be read.
    void kill();
    /// Lets go of the pipe and of the helper, ending it when it still runs.
    void close();

private:
    std::unique_ptr<platform::ChildProcess> m_child;
    bool m_wasKilled = false;
};

} // namespace tollivar::fetch
