#include "platform/internal/local_socket_posix.h"
#include "platform/local_messages.h"
#include "platform/thread_role.h"

#include <QFileInfo>
#include <QSocketNotifier>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cerrno>
#include <list>
#include <optional>

#include <poll.h>
#include <sys/socket.h>

namespace tollivar::platform {

namespace {

constexpr qsizetype kHeaderSize = 8;
constexpr char kAnswer = 1;
constexpr std::size_t kMaximumPeers = 16;
/// What one peer may bring in one turn of the event loop, so that none holds the others up.
constexpr std::size_t kChunkSize = 65'536;
constexpr int kMaximumWelcomesPerTurn = 8;

struct Frame {
    CopyDataId id = CopyDataId::CapturedText;
    QByteArray payload;
};

bool isKnown(quint32 id)
{
    constexpr std::array kIds = {CopyDataId::CapturedText, CopyDataId::CommandLine,
                                 CopyDataId::BringToFront, CopyDataId::AddTasks};
    return std::any_of(kIds.begin(), kIds.end(),
                       [id](CopyDataId known) { return static_cast<quint32>(known) == id; });
}

QByteArray frameBytes(CopyDataId id, const QByteArray &payload)
{
    QByteArray bytes(kHeaderSize, Qt::Uninitialized);
    qToLittleEndian(static_cast<quint32>(id), bytes.data());
    qToLittleEndian(static_cast<quint32>(payload.size()), bytes.data() + sizeof(quint32));
    return bytes + payload;
}

/// What one peer has sent so far.
class Conversation {
public:
    /// False when the peer broke the rules.
    [[nodiscard]] bool take(QByteArrayView bytes)
    {
        m_bytes += bytes;
        if (m_bytes.size() < kHeaderSize) {
            return true;
        }
        return isKnown(idNumber()) && payloadSize() <= kMaximumLocalPayload &&
               m_bytes.size() <= frameSize();
    }

    /// The frame once it is complete.
    [[nodiscard]] std::optional<Frame> frame() const
    {
        if (m_bytes.size() < kHeaderSize || m_bytes.size() < frameSize()) {
            return std::nullopt;
        }
        return Frame{static_cast<CopyDataId>(idNumber()), m_bytes.mid(kHeaderSize)};
    }

private:
    [[nodiscard]] quint32 idNumber() const { return qFromLittleEndian<quint32>(m_bytes.data()); }
    [[nodiscard]] quint32 payloadSize() const
    {
        return qFromLittleEndian<quint32>(m_bytes.data() + sizeof(quint32));
    }
    [[nodiscard]] qsizetype frameSize() const { return kHeaderSize + qsizetype{payloadSize()}; }

    QByteArray m_bytes;
};

/// Ends itself when its own signal is being handled.
struct NotifierDeleter {
    void operator()(QSocketNotifier *notifier) const
    {
        notifier->setEnabled(false);
        notifier->deleteLater();
    }
};
using Notifier = std::unique_ptr<QSocketNotifier, NotifierDeleter>;

struct Peer {
    // The notifier goes first: it must not watch a descriptor that has been closed.
    Descriptor socket;
    Conversation conversation;
    Notifier notifier;
};

} // namespace

/// Shared by the server and by the call that runs the handler, which may destroy the server.
struct LocalMessageServer::Private : std::enable_shared_from_this<Private> {
    PrivateFolder folder;
    QByteArray name;
    Descriptor listener;
    Handler handler;
    /// Those whose frame is not complete, the oldest first.
    std::list<std::shared_ptr<Peer>> peers;
    Notifier notifier;

    Private(PrivateFolder openFolder, QByteArray socketName, Descriptor socket)
        : folder(std::move(openFolder))
        , name(std::move(socketName))
        , listener(std::move(socket))
    {
    }

    /// Calls a function of ours whenever the descriptor can be read, as long as we live.
    template<typename Function>
    Notifier watch(const Descriptor &descriptor, Function function)
    {
        Notifier watching(new QSocketNotifier(descriptor.get(), QSocketNotifier::Read));
        QObject::connect(watching.get(), &QSocketNotifier::activated, watching.get(),
                         [weak = weak_from_this(), function] {
                             if (const auto self = weak.lock()) {
                                 function(*self);
                             }
                         });
        return watching;
    }

    void welcomePeers()
    {
        for (int i = 0; i < kMaximumWelcomesPerTurn; ++i) {
            Descriptor socket(
                accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
            if (!socket.isOpen()) {
                return;
            }
            if (isOwnPeer(socket)) {
                welcome(std::move(socket));
            }
        }
    }

    void welcome(Descriptor socket)
    {
        if (peers.size() >= kMaximumPeers) {
            // An honest peer sends its frame at once; the one that has taken longest is not.
            peers.pop_front();
        }
        const auto peer = std::make_shared<Peer>();
        peer->socket = std::move(socket);
        peer->notifier = watch(peer->socket, [weak = std::weak_ptr(peer)](Private &self) {
            if (const auto caller = weak.lock()) {
                self.listenTo(caller);
            }
        });
        peers.push_back(peer);
    }

    void listenTo(const std::shared_ptr<Peer> &peer)
    {
        std::array<char, kChunkSize> buffer{};
        const ssize_t count = recv(peer->socket.get(), buffer.data(), buffer.size(), 0);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
            return;
        }
        if (count <= 0 || !peer->conversation.take(QByteArrayView(buffer.data(), count))) {
            peers.remove(peer);
            return;
        }
        if (const auto frame = peer->conversation.frame()) {
            peers.remove(peer);
            peer->notifier.reset();
            handler(frame->id, frame->payload);
            send(peer->socket.get(), &kAnswer, sizeof(kAnswer), MSG_NOSIGNAL);
        }
    }
};

Result<std::unique_ptr<LocalMessageServer>> LocalMessageServer::listen(const QString &path,
                                                                       Handler handler)
{
    mainThread.assertHeld();
    const QFileInfo place(path);
    auto folder = PrivateFolder::open(place.path(), PrivateFolder::WhenMissing::Make);
    if (!folder) {
        return tl::unexpected(folder.error());
    }
    const QByteArray name = place.fileName().toUtf8();
    auto listener = folder->listen(name);
    if (!listener) {
        return tl::unexpected(listener.error());
    }
    auto d = std::make_shared<Private>(std::move(*folder), name, std::move(*listener));
    d->handler = std::move(handler);
    d->notifier = d->watch(d->listener, [](Private &self) { self.welcomePeers(); });
    return std::unique_ptr<LocalMessageServer>(new LocalMessageServer(std::move(d)));
}

LocalMessageServer::LocalMessageServer(std::shared_ptr<Private> data) : d(std::move(data)) {}

LocalMessageServer::~LocalMessageServer()
{
    mainThread.assertHeld();
    d->notifier.reset();
    d->peers.clear();
    d->folder.remove(d->name);
    d->listener.close();
}

namespace {

using SteadyClock = std::chrono::steady_clock;

/// True when the socket is ready for `events` before the deadline.
bool waitFor(const Descriptor &socket, short events, SteadyClock::time_point deadline)
{
    pollfd waiting = {.fd = socket.get(), .events = events, .revents = 0};
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now());
        if (left.count() <= 0) {
            return false;
        }
        const int count = poll(&waiting, 1, static_cast<int>(left.count()));
        if (count >= 0 || errno != EINTR) {
            return count > 0;
        }
    }
}

bool sendAll(const Descriptor &socket, QByteArrayView bytes, SteadyClock::time_point deadline)
{
    while (!bytes.isEmpty() && waitFor(socket, POLLOUT, deadline)) {
        const ssize_t count =
            send(socket.get(), bytes.data(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL);
        if (count < 0 && errno != EAGAIN && errno != EINTR) {
            return false;
        }
        bytes = bytes.sliced(std::max<ssize_t>(count, 0));
    }
    return bytes.isEmpty();
}

} // namespace

Result<void> sendLocalMessage(const QString &path, CopyDataId id, const QByteArray &payload,
                              std::chrono::milliseconds limit)
{
    if (payload.size() > qsizetype{kMaximumLocalPayload}) {
        return failure(ErrorKind::AskUser, QStringLiteral("the message is too long"));
    }
    const auto deadline = SteadyClock::now() + limit;
    const QFileInfo place(path);
    const auto folder = PrivateFolder::open(place.path(), PrivateFolder::WhenMissing::Fail);
    if (!folder) {
        return failure(ErrorKind::Hopeless, QStringLiteral("nobody listens"));
    }
    const auto socket = folder->connect(place.fileName().toUtf8(), limit);
    if (!socket) {
        return tl::unexpected(socket.error());
    }
    if (!isOwnPeer(*socket)) {
        return failure(ErrorKind::Hopeless, QStringLiteral("somebody else listens"));
    }
    char answer = 0;
    if (!sendAll(*socket, frameBytes(id, payload), deadline) ||
        !waitFor(*socket, POLLIN, deadline) ||
        recv(socket->get(), &answer, sizeof(answer), 0) != sizeof(answer) || answer != kAnswer) {
        return failure(ErrorKind::TryAgain, QStringLiteral("no answer came"));
    }
    return {};
}

} // namespace tollivar::platform
