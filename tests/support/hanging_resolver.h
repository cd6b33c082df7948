#pragma once

#include <QString>

namespace tollivar::test {

/// A resolver of host names that never answers for one name, as a dead name server does. It stands in
/// front of the system's for the whole test program, libraries included.
///
/// Threads: any; one object at a time.
class HangingResolver {
public:
    HangingResolver();
    /// Lets every caller go, with a failure, and waits until the last one has left.
    ~HangingResolver();
    HangingResolver(const HangingResolver &) = delete;
    HangingResolver &operator=(const HangingResolver &) = delete;

    /// The name that it hangs on.
    [[nodiscard]] static QString host() { return QStringLiteral("hangs.example"); }
    /// How many callers wait now.
    [[nodiscard]] int waiting() const;
};

} // namespace tollivar::test
