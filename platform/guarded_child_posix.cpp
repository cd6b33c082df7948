#include "platform/exec_lists_posix.h"
#include "platform/find_program.h"
#include "platform/guarded_child.h"

#include <QDir>
#include <QFile>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tollivar::platform {

using std::chrono::milliseconds;

namespace {

using Clock = std::chrono::steady_clock;

constexpr QLatin1StringView kGuardian("browser-guard");
constexpr std::size_t kReadSize = 256UL * 1024;
/// How long the guardian may take to end everything before it is ended itself.
constexpr milliseconds kGuardianLimit{8'000};

/// Descriptors that the guarded program expects, and the one that tells the guardian of our end.
constexpr int kProgramIn = 3;
constexpr int kProgramOut = 4;
constexpr int kLifeLine = 5;
/// Own ends stay clear of those numbers.
constexpr int kFirstFreeDescriptor = 10;

struct Pipe {
    int readEnd = -1;
    int writeEnd = -1;

    [[nodiscard]] bool open()
    {
        std::array<int, 2> ends = {-1, -1};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            return false;
        }
        readEnd = fcntl(ends[0], F_DUPFD_CLOEXEC, kFirstFreeDescriptor);
        writeEnd = fcntl(ends[1], F_DUPFD_CLOEXEC, kFirstFreeDescriptor);
        ::close(ends[0]);
        ::close(ends[1]);
        return readEnd >= 0 && writeEnd >= 0;
    }

    static void close(int &end)
    {
        if (end >= 0) {
            ::close(std::exchange(end, -1));
        }
    }

    void close()
    {
        close(readEnd);
        close(writeEnd);
    }
};

/// After the fork: only calls that are safe in a copy of a process with threads.
[[noreturn]] void becomeGuardian(const QByteArray &guardian, const PointerList &arguments,
                                 const PointerList &environment, int programIn, int programOut,
                                 int lifeLine)
{
    // A session of its own: whoever kills our process group must not reach the guardian.
    setsid();
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(null, STDIN_FILENO);
    dup2(null, STDOUT_FILENO);
    dup2(null, STDERR_FILENO);
    dup2(programIn, kProgramIn);
    dup2(programOut, kProgramOut);
    dup2(lifeLine, kLifeLine);
    close_range(kLifeLine + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    execve(guardian.constData(), arguments.data(), environment.data());
    _exit(127);
}

void pause(milliseconds length)
{
    poll(nullptr, 0, static_cast<int>(length.count()));
}

} // namespace

struct GuardedChild::Private {
    pid_t guardian = -1;
    Pipe commands; ///< we write
    Pipe answers;  ///< we read
    Pipe lifeLine; ///< we hold the writing end and never use it
    Pipe wakeUp;   ///< a byte in it ends all waiting
    QString folder;
    bool isGone = false;

    Private() = default;
    Private(const Private &) = delete;
    Private &operator=(const Private &) = delete;
    ~Private()
    {
        commands.close();
        answers.close();
        lifeLine.close();
        wakeUp.close();
        if (guardian > 0) {
            reapGuardian();
        }
    }

    /// False when the limit passed or wake() was called first.
    [[nodiscard]] bool waitFor(int descriptor, short what, milliseconds limit) const
    {
        std::array<pollfd, 2> waits = {pollfd{descriptor, what, 0},
                                       pollfd{wakeUp.readEnd, POLLIN, 0}};
        poll(waits.data(), waits.size(), static_cast<int>(limit.count()));
        return waits[0].revents != 0;
    }

    void reapGuardian() const
    {
        const auto deadline = Clock::now() + kGuardianLimit;
        int status = 0;
        while (waitpid(guardian, &status, WNOHANG) == 0) {
            if (Clock::now() > deadline) {
                kill(guardian, SIGKILL);
                waitpid(guardian, &status, 0);
                break;
            }
            pause(milliseconds(5));
        }
        if (WIFSIGNALED(status)) {
            // It was ended before it could clean up, so the folder is the one that it made.
            QDir(folder).removeRecursively();
        }
    }
};

Result<std::unique_ptr<GuardedChild>> GuardedChild::start(const GuardedOptions &options)
{
    const auto guardian = findProgram(kGuardian);
    if (!guardian) {
        return failure(ErrorKind::AskUser, QStringLiteral("%1 is not installed").arg(kGuardian));
    }
    auto d = std::make_unique<Private>();
    if (!d->commands.open() || !d->answers.open() || !d->lifeLine.open() || !d->wakeUp.open()) {
        return failure(ErrorKind::TryAgain, QStringLiteral("no pipe can be made"), errno);
    }
    std::vector<QByteArray> words = {
        QFile::encodeName(*guardian),
        options.pipes == GuardedPipes::StandardStreams ? "streams" : "pipes",
        QFile::encodeName(options.folder), QFile::encodeName(options.program)};
    for (const QString &argument : options.arguments) {
        words.push_back(argument.toUtf8());
    }
    const QByteArray path = QFile::encodeName(*guardian);
    const PointerList arguments(std::move(words));
    const PointerList environment = environmentWith(options.environment);
    d->folder = options.folder;
    d->guardian = fork();
    if (d->guardian == 0) {
        becomeGuardian(path, arguments, environment, d->commands.readEnd, d->answers.writeEnd,
                       d->lifeLine.readEnd);
    }
    Pipe::close(d->commands.readEnd);
    Pipe::close(d->answers.writeEnd);
    Pipe::close(d->lifeLine.readEnd);
    if (d->guardian < 0) {
        return failure(ErrorKind::TryAgain, QStringLiteral("no process can be made"), errno);
    }
    fcntl(d->commands.writeEnd, F_SETFL, O_NONBLOCK);
    fcntl(d->answers.readEnd, F_SETFL, O_NONBLOCK);
    fcntl(d->wakeUp.writeEnd, F_SETFL, O_NONBLOCK);
    // A program that is gone makes a write fail; it must not end us.
    signal(SIGPIPE, SIG_IGN);
    return std::unique_ptr<GuardedChild>(new GuardedChild(std::move(d)));
}

GuardedChild::GuardedChild(std::unique_ptr<Private> data) : d(std::move(data)) {}

GuardedChild::~GuardedChild() = default;

bool GuardedChild::write(const QByteArray &bytes, milliseconds limit)
{
    const auto deadline = Clock::now() + limit;
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::write(d->commands.writeEnd, bytes.data() + done,
                                      static_cast<std::size_t>(bytes.size() - done));
        if (count > 0) {
            done += count;
        } else if (errno != EAGAIN && errno != EINTR) {
            d->isGone = true;
            return false;
        } else if (const auto left =
                       std::chrono::duration_cast<milliseconds>(deadline - Clock::now());
                   left.count() <= 0 || !d->waitFor(d->commands.writeEnd, POLLOUT, left)) {
            return false;
        }
    }
    return true;
}

void GuardedChild::closeInput()
{
    Pipe::close(d->commands.writeEnd);
}

QByteArray GuardedChild::read(milliseconds limit)
{
    if (d->isGone || !d->waitFor(d->answers.readEnd, POLLIN, limit)) {
        return {};
    }
    QByteArray bytes(kReadSize, Qt::Uninitialized);
    const ssize_t count = ::read(d->answers.readEnd, bytes.data(), kReadSize);
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) {
        d->isGone = true;
    }
    bytes.truncate(std::max<ssize_t>(count, 0));
    return bytes;
}

void GuardedChild::wake()
{
    constexpr char kByte = 0;
    // Never read: who is woken once shall not wait again. A full pipe has woken already.
    [[maybe_unused]] const ssize_t written = ::write(d->wakeUp.writeEnd, &kByte, 1);
}

bool GuardedChild::isGone() const
{
    return d->isGone;
}

bool isAdministrator()
{
    return geteuid() == 0;
}

} // namespace tollivar::platform
