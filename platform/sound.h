#pragma once

#include <QString>

#include <memory>

namespace tollivar::platform {

/// Plays short sounds through the desktop's sound service. Silent, and nothing else, on a machine
/// without a device or a service.
///
/// Threads: the main thread; playing never waits, the service does its work by itself.
/// Owns:    the connection to the service, made at the first sound.
class Sound {
public:
    Sound();
    ~Sound();
    Sound(const Sound &) = delete;
    Sound &operator=(const Sound &) = delete;

    void play(const QString &path);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace tollivar::platform
