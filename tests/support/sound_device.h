#pragma once

#include "tests/support/sandbox.h"

#include <QByteArray>
#include <QString>

namespace tollivar::test {

/// The only sound device that programs find while it lives, this one included: it writes what they
/// play into a file, as fast as that comes.
class SoundDevice {
public:
    SoundDevice();
    ~SoundDevice();
    SoundDevice(const SoundDevice &) = delete;
    SoundDevice &operator=(const SoundDevice &) = delete;

    /// The samples that were played so far.
    [[nodiscard]] QByteArray heard() const;

    /// Hears anew.
    void forget();
    /// From now on there is no device.
    void unplug();
    void plugIn();
    /// From now on whoever wants to play is held up.
    void hang();
    /// Lets go whom it holds up and waits until they are done; what they play is not heard. Waits
    /// for somebody to hold up if there is nobody yet.
    void release();

private:
    void describe(const QByteArray &devices);

    Sandbox m_sandbox;
    int m_descriptions = 0;
};

} // namespace tollivar::test
