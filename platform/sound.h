#pragma once

#include <QString>

#include <memory>

namespace tollivar::platform {

class WorkerThread;

/// Plays short sounds through the desktop's sound service. Silent, and nothing else, on a machine
/// without a device or a service.
///
/// Threads: the main thread. Nothing here waits: a sound is handed over on a thread of its own, as
///          a service that hangs would hold up whoever asks it.
/// Owns:    the connection to the service, made at the first sound. Destroying it leaves a hanging
///          service behind.
class Sound {
public:
    Sound();
    ~Sound();
    Sound(const Sound &) = delete;
    Sound &operator=(const Sound &) = delete;

    /// Does nothing while isBusy(): the sound before it says as much.
    void play(const QString &path);
    /// True while a sound is being handed over, which takes milliseconds unless the service hangs.
    [[nodiscard]] bool isBusy() const;

private:
    struct Service;
    std::shared_ptr<Service> m_service;
    std::unique_ptr<WorkerThread> m_thread;
};

} // namespace tollivar::platform
