#pragma once

#include "platform/result.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <memory>

namespace tollivar::platform {

/// Where a guarded program finds the pipes to us.
enum class GuardedPipes {
    ThreeAndFour,    ///< reads descriptor 3 and writes 4; its standard streams lead nowhere
    StandardStreams, ///< reads standard input and writes standard output; errors lead nowhere
};

/// What a guarded program is, and what goes with it.
struct GuardedOptions {
    QString program; ///< absolute path
    QStringList arguments;
    /// "NAME=value" entries that replace or join our environment.
    QStringList environment;
    /// Absolute path of a folder that is not there yet. The guard makes it, for us alone, before
    /// the program starts, and removes it with all that is in it when the program has ended.
    QString folder;
    GuardedPipes pipes = GuardedPipes::ThreeAndFour;
};

/// A program that talks over two pipes and never outlives us, nor leaves its folder behind, even
/// when we are killed: a guardian process stands between, ends the program and all that it started,
/// and removes the folder.
///
/// Threads: one thread; wake() from any.
/// Owns:    the guardian and the pipes. The destructor ends the program and waits until the folder
///          is gone, up to a few seconds.
class GuardedChild {
public:
    /// Errors: AskUser when the guardian is not installed, TryAgain when there is no room for
    ///         another process. A program that cannot be run, or whose folder cannot be made, is
    ///         gone at once.
    [[nodiscard]] static Result<std::unique_ptr<GuardedChild>> start(const GuardedOptions &options);

    ~GuardedChild();
    GuardedChild(const GuardedChild &) = delete;
    GuardedChild &operator=(const GuardedChild &) = delete;

    /// False when the program does not take the bytes within `limit`, wake() was called meanwhile,
    /// or the program is gone.
    [[nodiscard]] bool write(const QByteArray &bytes, std::chrono::milliseconds limit);

    /// Tells the program that nothing more will be written. No write() afterwards.
    void closeInput();

    /// What the program said: waits up to `limit` for the first byte. Empty when nothing came.
    [[nodiscard]] QByteArray read(std::chrono::milliseconds limit);

    /// Ends a read() or write() under way, and every later one that would wait.
    void wake();

    /// True once a read has met the end of the program's pipe, or a write a closed one.
    [[nodiscard]] bool isGone() const;

private:
    struct Private;
    explicit GuardedChild(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};

/// True when we run with every right, which some programs refuse to do.
[[nodiscard]] bool isAdministrator();

/// The guardian's own program: the whole of its main function. Its arguments are where the guarded
/// program finds its pipes, the folder, that program and its arguments.
[[nodiscard]] int runGuardian(int argc, char **argv);

} // namespace tollivar::platform
