#pragma once

#include "platform/app_messages.h"
#include "platform/result.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace tollivar::platform {

/// The largest payload that is sent or taken.
inline constexpr quint32 kMaximumLocalPayload = 16 * 1024 * 1024;

/// Takes messages of the person's other processes over a local socket that only the person may use.
///
/// A frame is an identifier and a byte count, 32 bits each, least significant byte first, and the
/// payload; it is answered by one byte when the handler has run. A peer that sends something else,
/// too much, or too slowly is cut off.
///
/// Threads: made, used and destroyed on one thread that runs an event loop; the handler runs there.
class LocalMessageServer {
public:
    using Handler = std::function<void(CopyDataId id, const QByteArray &payload)>;

    /// Listens at `path`, replacing a socket that a dead process left there: the caller makes sure,
    /// by a lock, that it is the only one.
    /// Errors: AskUser when it cannot listen there.
    [[nodiscard]] static Result<std::unique_ptr<LocalMessageServer>> listen(const QString &path,
                                                                            Handler handler);
    ~LocalMessageServer();
    LocalMessageServer(const LocalMessageServer &) = delete;
    LocalMessageServer &operator=(const LocalMessageServer &) = delete;

private:
    struct Private;
    explicit LocalMessageServer(std::unique_ptr<Private> d);
    std::unique_ptr<Private> d;
};

/// Sends one message and waits for its answer. Blocks up to `limit`.
/// Errors: Hopeless when nobody listens, TryAgain when the listener does not answer in time.
[[nodiscard]] Result<void> sendLocalMessage(const QString &path, CopyDataId id,
                                            const QByteArray &payload,
                                            std::chrono::milliseconds limit);

} // namespace tollivar::platform
