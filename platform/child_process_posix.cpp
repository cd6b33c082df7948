#include "platform/child_process.h"
#include "platform/command_line_text.h"
#include "platform/find_program.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tollivar::platform {

namespace {

constexpr int kFirstOwnDescriptor = 3;

/// What execve() wants, kept alive beside the texts it points to.
class PointerList {
public:
    explicit PointerList(std::vector<QByteArray> texts) : m_texts(std::move(texts))
    {
        for (QByteArray &text : m_texts) {
            m_pointers.push_back(text.data());
        }
        m_pointers.push_back(nullptr);
    }

    [[nodiscard]] char *const *data() const { return m_pointers.data(); }

private:
    std::vector<QByteArray> m_texts;
    std::vector<char *> m_pointers;
};

QByteArray nameOf(const QByteArray &entry)
{
    return entry.left(entry.indexOf('='));
}

PointerList environmentWith(const QStringList &changes)
{
    std::vector<QByteArray> entries;
    for (const QString &change : changes) {
        entries.push_back(QFile::encodeName(change));
    }
    const std::size_t changeCount = entries.size();
    for (char **entry = environ; *entry != nullptr; ++entry) {
        const QByteArray name = nameOf(*entry);
        const bool isReplaced =
            std::any_of(entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(changeCount),
                        [&name](const QByteArray &change) { return nameOf(change) == name; });
        if (!isReplaced) {
            entries.emplace_back(*entry);
        }
    }
    return PointerList(std::move(entries));
}

/// Everything the new process needs, prepared before the fork: after it only calls that are safe
/// in a copy of a process with threads are allowed.
struct Launch {
    QByteArray program;
    PointerList arguments;
    PointerList environment;
    pid_t parent = 0;
    int output = -1;
    int report = -1;
};

[[noreturn]] void failInChild(const Launch &launch)
{
    const int code = errno;
    [[maybe_unused]] const auto written = write(launch.report, &code, sizeof(code));
    _exit(127);
}

[[noreturn]] void becomeProgram(const Launch &launch)
{
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != launch.parent) {
        _exit(127); // The parent died before the line above took effect.
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
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

void closeIfOpen(int &handle)
{
    if (handle >= 0) {
        close(handle);
        handle = -1;
    }
}

/// The child's error code when it could not become the program; 0 when it did.
int startError(int report)
{
    int code = 0;
    while (read(report, &code, sizeof(code)) < 0 && errno == EINTR) {
    }
    return code;
}

} // namespace

struct ChildProcess::Private {
    pid_t process = -1;
    int output = -1;
    std::optional<int> exitCode;

    ~Private() { closeIfOpen(output); }

    void reap(int options)
    {
        int status = 0;
        pid_t ended = -1;
        do {
            ended = waitpid(process, &status, options);
        } while (ended < 0 && errno == EINTR);
        if (ended == process) {
            exitCode = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
        } else if (ended < 0) {
            exitCode = -1; // Somebody else reaped it.
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
    std::vector<QByteArray> arguments;
    for (const QString &word : words) {
        arguments.push_back(word.toUtf8());
    }
    std::array<int, 2> output = {-1, -1};
    std::array<int, 2> report = {-1, -1};
    const bool wantsOutput = options.output == ChildOutput::OnePipe;
    if ((wantsOutput && pipe2(output.data(), O_CLOEXEC) != 0) ||
        pipe2(report.data(), O_CLOEXEC) != 0) {
        const int code = errno;
        closeIfOpen(output[0]);
        closeIfOpen(output[1]);
        return failure(ErrorKind::TryAgain, QStringLiteral("no pipe can be made"), code);
    }
    const Launch launch{.program = QFile::encodeName(*program),
                        .arguments = PointerList(std::move(arguments)),
                        .environment = environmentWith(options.environment),
                        .parent = getpid(),
                        .output = output[1],
                        .report = report[1]};
    auto d = std::make_unique<Private>();
    d->process = fork();
    const int forkError = errno;
    if (d->process == 0) {
        becomeProgram(launch);
    }
    d->output = output[0];
    closeIfOpen(output[1]);
    closeIfOpen(report[1]);
    const int code = d->process < 0 ? forkError : startError(report[0]);
    closeIfOpen(report[0]);
    if (code != 0) {
        if (d->process > 0) {
            d->reap(0);
        }
        return failure(
            ErrorKind::AskUser,
            QStringLiteral("%1: %2").arg(*program, QString::fromLocal8Bit(std::strerror(code))),
            code);
    }
    if (d->output >= 0) {
        fcntl(d->output, F_SETFL, O_NONBLOCK);
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
    if (d->output < 0) {
        return 0;
    }
    ssize_t count = -1;
    do {
        count = ::read(d->output, buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool ChildProcess::hasEnded()
{
    if (!d->exitCode) {
        d->reap(WNOHANG);
    }
    return d->exitCode.has_value();
}

std::optional<int> ChildProcess::exitCode()
{
    return hasEnded() ? d->exitCode : std::nullopt;
}

void ChildProcess::kill()
{
    // The group may hold grandchildren after the child itself has ended; its number stays taken
    // as long as one of them lives, and the child is not reaped before the first signal.
    if (!d->exitCode) {
        ::kill(-d->process, SIGKILL);
        d->reap(0);
    }
}

qint64 ChildProcess::processId() const
{
    return d->process;
}

} // namespace tollivar::platform
