#include "platform/file_lock.h"

#include <QFile>

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace tollivar::platform {

using namespace Qt::StringLiterals;

struct FileLock::Private {
    explicit Private(int file) : descriptor(file) {}
    ~Private() { ::close(descriptor); }
    Private(const Private &) = delete;
    Private &operator=(const Private &) = delete;

    int descriptor;
};

namespace {

QString textOf(int systemCode)
{
    return QString::fromStdString(std::generic_category().message(systemCode));
}

} // namespace

FileLock::FileLock(std::unique_ptr<Private> parts) : d(std::move(parts)) {}
FileLock::~FileLock() = default;

Result<std::unique_ptr<FileLock>> FileLock::take(const QString &path)
{
    constexpr mode_t ownerOnly = 0600;
    // Non-blocking, so that a pipe of that name cannot hold us up.
    const int descriptor = ::open(QFile::encodeName(path).constData(),
                                  O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, ownerOnly);
    if (descriptor < 0) {
        return failure(ErrorKind::AskUser, u"%1: %2"_s.arg(path, textOf(errno)), errno);
    }
    auto file = std::make_unique<Private>(descriptor);
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        const int code = errno;
        const ErrorKind kind = code == EWOULDBLOCK ? ErrorKind::TryAgain : ErrorKind::AskUser;
        return failure(kind, u"%1: %2"_s.arg(path, textOf(code)), code);
    }
    return std::unique_ptr<FileLock>(new FileLock(std::move(file)));
}

} // namespace tollivar::platform
