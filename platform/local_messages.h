#pragma once

#include "platform/app_messages.h"
#include "platform/result.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace tollivar::platform {

/// The largest payload that is sent or taken, in bytes.
inline constexpr quint32 kMaximumLocalPayload = 8 * 1024 * 1024;

/// Takes messages of the person's other processes over a local socket that only the person may use.
///
/// docs/formats/local-messages.md has the frame's form. A peer that sends anything else is cut off;
/// so is the one that has taken longest when too many have not finished.
///
/// Threads: made, used and destroyed on the main thread; the handler runs there, from the event
///          loop. It may run an event loop of its own and may destroy the server.
/// Owns:    the socket and its place in the file system.
class LocalMessageServer {
public:
    using Handler = std::function<void(CopyDataId id, const QByteArray &payload)>;

    /// Listens at `path`, replacing a socket that a dead process left there: the caller makes sure,
    /// by a lock, that it is the only one. The folder that holds the socket is made when it is
    /// missing, and closed to everybody else: it must be meant for nothing but the socket.
    /// Errors: AskUser when it cannot listen there.
    [[nodiscard]] static Result<std::unique_ptr<LocalMessageServer>> listen(const QString &path,
                                                                            Handler handler);
    ~LocalMessageServer();
    LocalMessageServer(const LocalMessageServer &) = delete;
    LocalMessageServer &operator=(const LocalMessageServer &) = delete;

private:
    struct Private;
    explicit LocalMessageServer(std::shared_ptr<Private> d);
    std::shared_ptr<Private> d;
};

/// Sends one message and waits until its handler has run. Blocks up to `limit`.
///
/// Threads: any.
/// Errors: Hopeless when nobody listens, TryAgain when the listener does not answer in time,
///         AskUser when the payload is too large.
[[nodiscard]] Result<void> sendLocalMessage(const QString &path, CopyDataId id,
                                            const QByteArray &payload,
                                            std::chrono::milliseconds limit);

} // namespace tollivar::platform
