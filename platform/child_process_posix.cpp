#include "platform/child_process.h"
#include "platform/command_line_text.h"
#include "platform/exec_lists_posix.h"
#include "platform/find_program.h"
#include "platform/internal/descriptor_posix.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <limits>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tollivar::platform {

namespace {

constexpr int kFirstOwnDescriptor = 3;
constexpr int kSignalBase = 128;
/// Of a child that somebody else has reaped.
constexpr int kNoExitCode = -1;
/// Of a child that could not become the program; nobody sees it.
constexpr int kNotStarted = 127;

/// Everything the new process needs, prepared before the fork: after it only calls that are safe
/// in a copy of a process with threads are allowed.
struct Launch {
    QByteArray program;
    PointerList arguments;
    PointerList environment;
    pid_t parent = 0;
    int output = -1;
    int report = -1;
    int orphanSignal = SIGKILL;
};

[[noreturn]] void failInChild(const Launch &launch)
{
    const int code = errno;
    [[maybe_unused]] const auto written = write(launch.report, &code, sizeof(code));
    _exit(kNotStarted);
}

[[noreturn]] void becomeProgram(const Launch &launch)
{
    // A session of its own: a group that can be ended whole, and no terminal to ask for a password.
    setsid();
    prctl(PR_SET_PDEATHSIG, launch.orphanSignal);
    if (getppid() != launch.parent) {
        _exit(kNotStarted); // The parent died before the line above took effect.
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    // Ignored signals stay ignored across exec; these two change how programs work.
    signal(SIGPIPE, SIG_DFL);
    signal(SIGCHLD, SIG_DFL);
    const int null = open("/dev/null", O_RDWR);
    const int output = launch.output >= 0 ? launch.output : null;
    if (dup2(null, STDIN_FILENO) < 0 || dup2(output, STDOUT_FILENO) < 0 ||
        dup2(output, STDERR_FILENO) < 0) {
        failInChild(launch);
    }
    // Whatever the parent has open without the close-on-exec mark stays with the parent.
    close_range(kFirstOwnDescriptor, ~0U, CLOSE_RANGE_CLOEXEC);
    execve(launch.program.constData(), launch.arguments.data(), launch.environment.data());
    failInChild(launch);
}

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;

    /// False, with errno set, when the system has no pipe left.
    [[nodiscard]] bool open()
    {
        std::array<int, 2> ends = {-1, -1};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            return false;
        }
        readEnd = Descriptor(ends[0]);
        writeEnd = Descriptor(ends[1]);
        return lift(readEnd) && lift(writeEnd);
    }

private:
    /// A program that was started without standard streams gets a pipe in their place, where the
    /// child would write over it.
    static bool lift(Descriptor &end)
    {
        if (end.get() < kFirstOwnDescriptor) {
            end = Descriptor(fcntl(end.get(), F_DUPFD_CLOEXEC, kFirstOwnDescriptor));
        }
        return end.isOpen();
    }
};

/// The child's error code when it could not become the program; 0 when it did.
int startError(int report)
{
    int code = 0;
    while (read(report, &code, sizeof(code)) < 0 && errno == EINTR) {
    }
    return code;
}

tl::unexpected<Error> startFailure(const QString &what, int code)
{
    const bool passes = code == EAGAIN || code == ENOMEM || code == EMFILE || code == ENFILE;
    return failure(passes ? ErrorKind::TryAgain : ErrorKind::AskUser,
                   what + QStringLiteral(": ") +
                       QString::fromStdString(std::generic_category().message(code)),
                   code);
}

/// Where the program that started us had its children's ends ignored, every exit status would be
/// lost.
void letChildrenBeWaitedFor()
{
    struct sigaction action = {};
    if (sigaction(SIGCHLD, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) {
        action.sa_handler = SIG_DFL;
        sigaction(SIGCHLD, &action, nullptr);
    }
}

} // namespace

struct ChildProcess::Private {
    pid_t process = -1;
    Descriptor output;
    std::optional<int> exitCode;
    /// Once reaped, the number of process and group may belong to somebody else.
    bool isReaped = false;

    /// Takes note of the end but leaves the ended process in its place, which keeps the number of
    /// its group ours until kill().
    void lookForEnd()
    {
        siginfo_t info = {};
        int result = -1;
        do {
            result = waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT);
        } while (result != 0 && errno == EINTR);
        if (result != 0) {
            exitCode = kNoExitCode;
            isReaped = true;
        } else if (info.si_pid == process) {
            exitCode = info.si_code == CLD_EXITED ? info.si_status : kSignalBase + info.si_status;
        }
    }

    void reap()
    {
        int status = 0;
        pid_t ended = -1;
        do {
            ended = waitpid(process, &status, 0);
        } while (ended < 0 && errno == EINTR);
        isReaped = true;
        if (!exitCode) {
            exitCode = WIFSIGNALED(status) ? kSignalBase + WTERMSIG(status) : WEXITSTATUS(status);
        }
    }
};

Result<std::unique_ptr<ChildProcess>> ChildProcess::start(const QString &commandLine,
                                                          const ChildOptions &options)
{
    const QStringList words = splitCommandLine(commandLine);
    const auto program = words.isEmpty() ? std::nullopt : findProgram(words.front());
    if (!program) {
        return failure(ErrorKind::AskUser, QStringLiteral("program \"%1\" is not found")
                                               .arg(words.isEmpty() ? QString() : words.front()));
    }
    if (commandLine.contains(QChar::Null)) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("the command line holds a NUL character"));
    }
    std::vector<QByteArray> arguments;
    for (const QString &word : words) {
        arguments.push_back(QFile::encodeName(word));
    }
    Pipe output;
    Pipe report;
    if ((options.output == ChildOutput::OnePipe && !output.open()) || !report.open()) {
        return startFailure(*program, errno);
    }
    letChildrenBeWaitedFor();
    const Launch launch{.program = QFile::encodeName(*program),
                        .arguments = PointerList(std::move(arguments)),
                        .environment = environmentWith(options.environment),
                        .parent = getpid(),
                        .output = output.writeEnd.get(),
                        .report = report.writeEnd.get(),
                        .orphanSignal = options.whenOrphaned == OrphanEnd::Ask ? SIGTERM : SIGKILL};
    auto d = std::make_unique<Private>();
    d->process = fork();
    if (d->process < 0) {
        return startFailure(*program, errno);
    }
    if (d->process == 0) {
        becomeProgram(launch);
    }
    report.writeEnd.close();
    if (const int code = startError(report.readEnd.get()); code != 0) {
        d->reap();
        return startFailure(*program, code);
    }
    d->output = std::move(output.readEnd);
    if (d->output.isOpen()) {
        fcntl(d->output.get(), F_SETFL, O_NONBLOCK);
    }
    return std::unique_ptr<ChildProcess>(new ChildProcess(std::move(d)));
}

ChildProcess::ChildProcess(std::unique_ptr<Private> data) : d(std::move(data)) {}

ChildProcess::~ChildProcess()
{
    kill();
}

std::size_t ChildProcess::read(std::span<std::byte> buffer)
{
    if (!d->output.isOpen()) {
        return 0;
    }
    ssize_t count = -1;
    do {
        count = ::read(d->output.get(), buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool ChildProcess::waitForOutput(std::chrono::milliseconds limit)
{
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + limit;
    pollfd pipe = {.fd = d->output.get(), .events = POLLIN, .revents = 0};
    // What one poll can wait for; limits of months are more.
    constexpr std::chrono::milliseconds kLongestPoll{std::numeric_limits<int>::max()};
    for (;;) {
        const auto left =
            std::max(std::chrono::milliseconds(0),
                     std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()));
        const auto wait = std::min(left, kLongestPoll);
        const int count = poll(&pipe, 1, static_cast<int>(wait.count()));
        const bool goesOn = count < 0 ? errno == EINTR : count == 0 && wait < left;
        if (!goesOn) {
            return count > 0;
        }
    }
}

bool ChildProcess::hasEnded()
{
    if (!d->exitCode) {
        d->lookForEnd();
    }
    return d->exitCode.has_value();
}

std::optional<int> ChildProcess::exitCode()
{
    return hasEnded() ? d->exitCode : std::nullopt;
}

void ChildProcess::kill()
{
    if (!d->isReaped) {
        ::kill(-d->process, SIGKILL);
        d->reap();
    }
}

qint64 ChildProcess::processId() const
{
    return d->process;
}

} // namespace tollivar::platform
