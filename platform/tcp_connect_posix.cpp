#include "platform/internal/descriptor_posix.h"
#include "platform/tcp_connect.h"

#include <QByteArray>

#include <array>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <netdb.h>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tollivar::platform {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

namespace {

struct Address {
    sockaddr_storage bytes{};
    socklen_t length = 0;
};

/// A look-up under way. Shared with its thread, which may outlive the caller's patience.
struct LookUp {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Address> addresses;
    bool isDone = false;
    bool isAbandoned = false;
};

std::vector<Address> lookUpNow(const QByteArray &host, const QByteArray &port)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_ADDRCONFIG;
    addrinfo *list = nullptr;
    std::vector<Address> addresses;
    if (::getaddrinfo(host.constData(), port.constData(), &hints, &list) != 0) {
        return addresses;
    }
    for (const addrinfo *each = list; each != nullptr; each = each->ai_next) {
        Address address;
        address.length = each->ai_addrlen;
        std::copy_n(reinterpret_cast<const char *>(each->ai_addr), each->ai_addrlen,
                    reinterpret_cast<char *>(&address.bytes));
        addresses.push_back(address);
    }
    ::freeaddrinfo(list);
    return addresses;
}

/// Nothing when it was stopped or took too long. The resolver cannot be stopped itself: its thread
/// is let go, and touches nothing but the shared state when it ends.
std::vector<Address> lookUp(const QString &host, std::uint16_t port, Clock::time_point deadline,
                            AutoResetEvent &stop)
{
    auto shared = std::make_shared<LookUp>();
    std::thread([shared, name = host.toUtf8(), service = QByteArray::number(port)] {
        auto addresses = lookUpNow(name, service);
        const std::lock_guard lock(shared->mutex);
        shared->addresses = std::move(addresses);
        shared->isDone = true;
        shared->changed.notify_all();
    }).detach();
    const AutoResetEvent::Watch watch(stop, [shared] {
        const std::lock_guard lock(shared->mutex);
        shared->isAbandoned = true;
        shared->changed.notify_all();
    });
    std::unique_lock lock(shared->mutex);
    shared->changed.wait_until(lock, deadline,
                               [&shared] { return shared->isDone || shared->isAbandoned; });
    return shared->isAbandoned ? std::vector<Address>() : shared->addresses;
}

int millisecondsUntil(Clock::time_point deadline)
{
    const auto left = std::chrono::duration_cast<milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max<milliseconds::rep>(left.count(), 0));
}

/// True when the connection stands before the deadline and before `wakeUp` becomes readable.
bool waitForConnection(int socket, int wakeUp, Clock::time_point deadline)
{
    std::array<pollfd, 2> waits = {pollfd{socket, POLLOUT, 0}, pollfd{wakeUp, POLLIN, 0}};
    const int ready = ::poll(waits.data(), waits.size(), millisecondsUntil(deadline));
    if (ready <= 0 || waits[1].revents != 0) {
        return false;
    }
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
}

Descriptor connectTo(const Address &address, int wakeUp, Clock::time_point deadline)
{
    Descriptor socket(
        ::socket(address.bytes.ss_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket.isOpen()) {
        return {};
    }
    const auto *where = reinterpret_cast<const sockaddr *>(&address.bytes);
    const bool isAtOnce = ::connect(socket.get(), where, address.length) == 0;
    if (!isAtOnce && (errno != EINPROGRESS || !waitForConnection(socket.get(), wakeUp, deadline))) {
        return {};
    }
    return socket;
}

void makeBlocking(int socket)
{
    const int flags = ::fcntl(socket, F_GETFL);
    ::fcntl(socket, F_SETFL, flags & ~O_NONBLOCK);
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

} // namespace

struct TcpConnection::Private {
    Descriptor socket;
    Descriptor ours; ///< the same connection under a number that nobody else closes
};

TcpConnection::TcpConnection(std::unique_ptr<Private> data) : d(std::move(data)) {}

TcpConnection::~TcpConnection() = default;

Result<std::unique_ptr<TcpConnection>> TcpConnection::connect(const QString &host,
                                                              std::uint16_t port,
                                                              milliseconds limit,
                                                              AutoResetEvent &stop)
{
    const auto deadline = Clock::now() + limit;
    const Descriptor wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    const auto addresses = lookUp(host, port, deadline, stop);
    const AutoResetEvent::Watch watch(stop, [handle = wakeUp.get()] {
        const std::uint64_t one = 1;
        static_cast<void>(!::write(handle, &one, sizeof one));
    });
    for (const Address &address : addresses) {
        Descriptor socket = connectTo(address, wakeUp.get(), deadline);
        if (stop.isSet()) {
            break;
        }
        if (!socket.isOpen()) {
            continue;
        }
        makeBlocking(socket.get());
        auto data = std::make_unique<Private>();
        data->ours = Descriptor(::fcntl(socket.get(), F_DUPFD_CLOEXEC, 0));
        data->socket = std::move(socket);
        return std::unique_ptr<TcpConnection>(new TcpConnection(std::move(data)));
    }
    return failure(ErrorKind::TryAgain, addresses.empty()
                                            ? QStringLiteral("%1 was not found").arg(host)
                                            : QStringLiteral("%1 does not answer").arg(host));
}

void TcpConnection::setTimeLimit(milliseconds limit)
{
    constexpr int kThousand = 1'000;
    const timeval time{limit.count() / kThousand, limit.count() % kThousand * kThousand};
    for (const int direction : {SO_RCVTIMEO, SO_SNDTIMEO}) {
        ::setsockopt(d->ours.get(), SOL_SOCKET, direction, &time, sizeof time);
    }
}

std::intptr_t TcpConnection::release()
{
    return d->socket.take();
}

void TcpConnection::wake()
{
    ::shutdown(d->ours.get(), SHUT_RDWR);
}

void ignoreBrokenConnections()
{
    // The signal goes to the thread that writes; a child does not inherit what it is given anew.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

} // namespace tollivar::platform
