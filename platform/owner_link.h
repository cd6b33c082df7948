#pragma once

#include <QObject>

#include <functional>
#include <mutex>

namespace tollivar::platform {

/// The way from a thread back to the object that it works for, which may be gone by then. The two
/// share it.
///
/// Threads: made and cut on the owner's thread; post() may be called on any.
template<typename Owner>
class OwnerLink {
public:
    explicit OwnerLink(Owner &owner) : m_owner(&owner) {}
    ~OwnerLink() = default;
    OwnerLink(const OwnerLink &) = delete;
    OwnerLink &operator=(const OwnerLink &) = delete;

    /// Runs `tell` from the owner's event loop, unless nobody is left to hear it.
    void post(std::function<void(Owner &)> tell)
    {
        const std::lock_guard lock(m_mutex);
        if (m_owner != nullptr) {
            // The owner takes along what has not run by its end.
            QMetaObject::invokeMethod(
                m_owner, [owner = m_owner, tell = std::move(tell)] { tell(*owner); },
                Qt::QueuedConnection);
        }
    }

    /// For the owner's destructor: nothing is posted from now on.
    void cut()
    {
        const std::lock_guard lock(m_mutex);
        m_owner = nullptr;
    }

private:
    std::mutex m_mutex;
    Owner *m_owner; ///< null once it is being destroyed
};

} // namespace tollivar::platform
