#include "platform/local_messages.h"

#include <QDeadlineTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>
#include <QtEndian>

#include <array>
#include <optional>

namespace tollivar::platform {

namespace {

constexpr qsizetype kHeaderSize = 8;
constexpr std::chrono::milliseconds kSlowestPeer{5'000};
constexpr int kMaximumPeers = 32;
constexpr char kAnswer = 1;

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
    bool take(const QByteArray &bytes)
    {
        m_bytes += bytes;
        if (m_bytes.size() < kHeaderSize) {
            return true;
        }
        return isKnown(idNumber()) && payloadSize() <= kMaximumLocalPayload &&
               m_bytes.size() <= kHeaderSize + qsizetype{payloadSize()};
    }

    /// The frame once it is complete.
    [[nodiscard]] std::optional<Frame> frame() const
    {
        if (m_bytes.size() < kHeaderSize ||
            m_bytes.size() < kHeaderSize + qsizetype{payloadSize()}) {
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

    QByteArray m_bytes;
};

} // namespace

struct LocalMessageServer::Private {
    QLocalServer server;
    Handler handler;
    int peers = 0;

    void welcome(QLocalSocket *peer)
    {
        if (peers >= kMaximumPeers) {
            peer->abort();
            peer->deleteLater();
            return;
        }
        ++peers;
        const auto conversation = std::make_shared<Conversation>();
        QObject::connect(peer, &QLocalSocket::readyRead, peer,
                         [this, peer, conversation] { read(peer, *conversation); });
        QObject::connect(peer, &QLocalSocket::disconnected, peer, [this, peer] {
            --peers;
            peer->deleteLater();
        });
        QTimer::singleShot(kSlowestPeer, peer, [peer] { peer->abort(); });
        read(peer, *conversation);
    }

    void read(QLocalSocket *peer, Conversation &conversation) const
    {
        if (!conversation.take(peer->readAll())) {
            peer->abort();
            return;
        }
        if (const auto frame = conversation.frame()) {
            handler(frame->id, frame->payload);
            peer->write(&kAnswer, 1);
            peer->disconnectFromServer();
        }
    }
};

Result<std::unique_ptr<LocalMessageServer>> LocalMessageServer::listen(const QString &path,
                                                                       Handler handler)
{
    auto d = std::make_unique<Private>();
    d->handler = std::move(handler);
    d->server.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&d->server, &QLocalServer::newConnection, &d->server, [data = d.get()] {
        while (QLocalSocket *const peer = data->server.nextPendingConnection()) {
            data->welcome(peer);
        }
    });
    QLocalServer::removeServer(path);
    if (!d->server.listen(path)) {
        return failure(ErrorKind::AskUser, d->server.errorString());
    }
    return std::unique_ptr<LocalMessageServer>(new LocalMessageServer(std::move(d)));
}

LocalMessageServer::LocalMessageServer(std::unique_ptr<Private> data) : d(std::move(data)) {}

LocalMessageServer::~LocalMessageServer() = default;

Result<void> sendLocalMessage(const QString &path, CopyDataId id, const QByteArray &payload,
                              std::chrono::milliseconds limit)
{
    if (payload.size() > qsizetype{kMaximumLocalPayload}) {
        return failure(ErrorKind::AskUser, QStringLiteral("the message is too long"));
    }
    const QDeadlineTimer deadline(limit);
    const auto left = [&deadline] { return static_cast<int>(deadline.remainingTime()); };
    QLocalSocket socket;
    socket.connectToServer(path);
    if (!socket.waitForConnected(left())) {
        return failure(ErrorKind::Hopeless, QStringLiteral("nobody listens"));
    }
    socket.write(frameBytes(id, payload));
    while (socket.bytesToWrite() > 0 && socket.waitForBytesWritten(left())) {
    }
    while (socket.bytesAvailable() == 0 && socket.waitForReadyRead(left())) {
    }
    if (socket.read(1) != QByteArray(1, kAnswer)) {
        return failure(ErrorKind::TryAgain, QStringLiteral("no answer came"));
    }
    return {};
}

} // namespace tollivar::platform
