#pragma once

#include <pthread.h>

namespace tollivar::test {

/// While it lives, no thread can be started in this process, as on a machine that has none left:
/// each would need a larger stack than there are addresses. Threads that run go on.
///
/// Threads: one at a time, on the main thread.
class NoThreads {
public:
    NoThreads();
    ~NoThreads();
    NoThreads(const NoThreads &) = delete;
    NoThreads &operator=(const NoThreads &) = delete;

private:
    pthread_attr_t m_before{};
};

} // namespace tollivar::test
