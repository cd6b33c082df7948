#include "platform/file_lock.h"
#include "platform/guarded_child.h"

#include <QFile>

#include <charconv>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>

#include <poll.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tollivar::platform {

namespace {

constexpr int kProgramIn = 3;
constexpr int kProgramOut = 4;
constexpr int kLifeLine = 5;
constexpr int kPipesArgument = 1;
constexpr int kFolderArgument = 2;
constexpr int kFirstProgramArgument = 3;
constexpr std::string_view kStandardStreams("streams");
constexpr std::chrono::milliseconds kKillRound{5};
constexpr int kKillRounds = 600;

/// What asks a program to end, as a terminal or a session does.
void takePoliteSignals(sighandler_t how)
{
    for (const int polite : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) {
        signal(polite, how);
    }
}

[[noreturn]] void becomeProgram(char **argv, pid_t guardian)
{
    // An ignored signal stays ignored in the program that follows.
    takePoliteSignals(SIG_DFL);
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != guardian) {
        _exit(127);
    }
    close(kLifeLine);
    if (argv[kPipesArgument] == kStandardStreams) {
        dup2(kProgramIn, STDIN_FILENO);
        dup2(kProgramOut, STDOUT_FILENO);
        close(kProgramIn);
        close(kProgramOut);
    }
    execv(argv[kFirstProgramArgument], argv + kFirstProgramArgument);
    _exit(127);
}

/// Until our owner is gone, or the program has ended by itself.
void waitForEnd(pid_t program)
{
    const auto handle = static_cast<int>(syscall(SYS_pidfd_open, program, 0));
    std::array<pollfd, 2> waits = {pollfd{kLifeLine, POLLIN, 0}, pollfd{handle, POLLIN, 0}};
    while (poll(waits.data(), waits.size(), -1) < 0 && errno == EINTR) {
    }
}

/// Every process whose parent we are: those that we started, and their children once orphaned.
void killChildren()
{
    const std::string self = std::to_string(getpid());
    std::ifstream list("/proc/" + self + "/task/" + self + "/children");
    for (pid_t child = 0; list >> child;) {
        kill(child, SIGKILL);
    }
}

void endEverything(pid_t program)
{
    if (program > 0) {
        kill(-program, SIGKILL);
    }
    for (int round = 0; round < kKillRounds; ++round) {
        killChildren();
        pid_t ended = 0;
        while ((ended = waitpid(-1, nullptr, WNOHANG)) > 0) {
        }
        if (ended < 0 && errno == ECHILD) {
            return;
        }
        std::this_thread::sleep_for(kKillRound);
    }
}

} // namespace

int runGuardian(int argc, char **argv)
{
    // Our owner's end is the one sign that counts: polite requests to all would leave the folder, if
    // they came to us once it is there.
    takePoliteSignals(SIG_IGN);
    // What is removed in the end must have been made by us; and because no folder is there before
    // we are, none can be left by an owner who is killed at the wrong moment.
    if (argc <= kFirstProgramArgument || mkdir(argv[kFolderArgument], S_IRWXU) != 0) {
        return 2;
    }
    // Orphans of the program become ours, so that none escapes.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    // Tells those who look for folders that were left behind that this one is in use.
    const auto lock =
        FileLock::take(QFile::decodeName(argv[kFolderArgument]) + QStringLiteral("/guardian.lock"));
    const pid_t self = getpid();
    const pid_t program = fork();
    if (program == 0) {
        becomeProgram(argv, self);
    }
    // The program alone holds its pipes, so that their end means its end.
    close(kProgramIn);
    close(kProgramOut);
    if (program > 0) {
        waitForEnd(program);
    }
    endEverything(program);
    std::error_code ignored;
    std::filesystem::remove_all(argv[kFolderArgument], ignored);
    return 0;
}

} // namespace tollivar::platform
