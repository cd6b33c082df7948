#pragma once

namespace tollivar::test {

/// While it lives, looking its host up takes as long as it lives: this program's every look-up goes
/// through here on its way to the system, also those of the libraries that it uses.
///
/// Threads: any; at most one at a time.
/// Owns:    the look-ups that it holds back; the destructor lets them fail and waits until they
///          have left.
class StalledLookUp {
public:
    static constexpr auto kHost = "stalled.example";

    StalledLookUp();
    ~StalledLookUp();
    StalledLookUp(const StalledLookUp &) = delete;
    StalledLookUp &operator=(const StalledLookUp &) = delete;

    /// Waits until somebody looks the host up; fails the test when nobody does.
    void waitUntilAsked() const;
};

} // namespace tollivar::test
