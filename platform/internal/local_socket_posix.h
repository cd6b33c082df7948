#pragma once

#include "platform/internal/descriptor_posix.h"
#include "platform/result.h"

#include <QByteArray>
#include <QString>

#include <chrono>

namespace tollivar::platform {

/// A folder that only this person may enter, held open: what is done in it cannot be led elsewhere.
///
/// Sockets are addressed through the open folder, so that the length of its path does not count
/// against the 107 bytes that a socket's address may have.
class PrivateFolder {
public:
    enum class WhenMissing { Make, Fail };

    /// Errors: AskUser when the folder is missing, no folder, or somebody else's. A folder of the
    ///         person's that others may enter is closed to them.
    [[nodiscard]] static Result<PrivateFolder> open(const QString &path, WhenMissing whenMissing);

    /// A socket that listens under `name`, in place of whatever stood there. Non-blocking.
    /// Errors: AskUser.
    [[nodiscard]] Result<Descriptor> listen(const QByteArray &name) const;
    /// Blocks up to `limit` while the listener has too many callers waiting.
    /// Errors: Hopeless when nobody listens there, TryAgain when the listener is too busy.
    [[nodiscard]] Result<Descriptor> connect(const QByteArray &name,
                                             std::chrono::milliseconds limit) const;
    void remove(const QByteArray &name) const;

private:
    explicit PrivateFolder(Descriptor folder) : m_folder(std::move(folder)) {}
    Descriptor m_folder;
};

/// True when the process at the other end belongs to this person.
[[nodiscard]] bool isOwnPeer(const Descriptor &socket);

} // namespace tollivar::platform
