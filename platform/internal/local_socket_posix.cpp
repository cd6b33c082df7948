#include "platform/internal/local_socket_posix.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/un.h>

namespace tollivar::platform {

namespace {

constexpr mode_t kOwnerOnlyFolder = 0700;
constexpr mode_t kOwnerOnlySocket = 0600;
constexpr mode_t kAccessOfOthers = 0077;
constexpr int kBacklog = 64;

tl::unexpected<Error> systemFailure(ErrorKind kind, const QString &what)
{
    const int code = errno;
    return failure(kind,
                   what + QStringLiteral(": ") +
                       QString::fromStdString(std::generic_category().message(code)),
                   code);
}

sockaddr_un addressOf(int folder, const QByteArray &name)
{
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(folder) + '/' + name;
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    Q_ASSERT(static_cast<std::size_t>(path.size()) < sizeof(address.sun_path));
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    return address;
}

/// The system's socket functions take their one address type by a cast.
const sockaddr *generic(const sockaddr_un &address)
{
    return reinterpret_cast<const sockaddr *>(&address);
}

} // namespace

Result<PrivateFolder> PrivateFolder::open(const QString &path, WhenMissing whenMissing)
{
    const QByteArray name = QFile::encodeName(path);
    if (whenMissing == WhenMissing::Make && ::mkdir(name.constData(), kOwnerOnlyFolder) != 0 &&
        errno != EEXIST) {
        return systemFailure(ErrorKind::AskUser, path);
    }
    Descriptor folder(
        ::open(name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!folder.isOpen() || fstat(folder.get(), &status) != 0) {
        return systemFailure(ErrorKind::AskUser, path);
    }
    if (status.st_uid != geteuid()) {
        return failure(ErrorKind::AskUser, path + QStringLiteral(": belongs to somebody else"));
    }
    if ((status.st_mode & kAccessOfOthers) != 0 && fchmod(folder.get(), kOwnerOnlyFolder) != 0) {
        return systemFailure(ErrorKind::AskUser, path);
    }
    return PrivateFolder(std::move(folder));
}

Result<Descriptor> PrivateFolder::listen(const QByteArray &name) const
{
    const QString what = QFile::decodeName(name);
    Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket.isOpen()) {
        return systemFailure(ErrorKind::AskUser, what);
    }
    remove(name);
    const sockaddr_un address = addressOf(m_folder.get(), name);
    if (bind(socket.get(), generic(address), sizeof(address)) != 0 ||
        fchmodat(m_folder.get(), name.constData(), kOwnerOnlySocket, 0) != 0 ||
        ::listen(socket.get(), kBacklog) != 0) {
        return systemFailure(ErrorKind::AskUser, what);
    }
    return socket;
}

Result<Descriptor> PrivateFolder::connect(const QByteArray &name,
                                          std::chrono::milliseconds limit) const
{
    const QString nobody = QStringLiteral("nobody listens");
    Descriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket.isOpen()) {
        return systemFailure(ErrorKind::TryAgain, nobody);
    }
    // Only a blocking connect waits for a place in the listener's queue, and this is its limit.
    const auto atLeastSome = std::max(limit, std::chrono::milliseconds(1)); // 0 is no limit
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(atLeastSome);
    const timeval timeLimit = {
        .tv_sec = seconds.count(),
        .tv_usec =
            std::chrono::duration_cast<std::chrono::microseconds>(atLeastSome - seconds).count()};
    setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &timeLimit, sizeof(timeLimit));
    const sockaddr_un address = addressOf(m_folder.get(), name);
    if (::connect(socket.get(), generic(address), sizeof(address)) != 0) {
        return systemFailure(errno == EAGAIN ? ErrorKind::TryAgain : ErrorKind::Hopeless, nobody);
    }
    fcntl(socket.get(), F_SETFL, O_NONBLOCK);
    return socket;
}

void PrivateFolder::remove(const QByteArray &name) const
{
    unlinkat(m_folder.get(), name.constData(), 0);
}

bool isOwnPeer(const Descriptor &socket)
{
    ucred peer = {};
    socklen_t size = sizeof(peer);
    return getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
           peer.uid == geteuid();
}

} // namespace tollivar::platform
