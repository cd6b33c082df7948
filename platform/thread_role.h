#pragma once

namespace tollivar::platform {

/// The role of a thread that owns state without a lock.
///
/// Threads: any.
class ThreadRole {
public:
    ThreadRole() = default;
    ~ThreadRole() = default;
    ThreadRole(const ThreadRole &) = delete;
    ThreadRole &operator=(const ThreadRole &) = delete;

    /// Ends the program when another thread calls: going on would corrupt what the role guards.
    void assertHeld() const;
    [[nodiscard]] bool isHeld() const;
};

/// The thread that runs main(): all task state, all widgets, the database connection.
///
/// A class of the main thread calls mainThread.assertHeld() where others call in.
// A value by its use, and one word with the comments that name it.
// NOLINTNEXTLINE(readability-identifier-naming)
extern const ThreadRole mainThread;

} // namespace tollivar::platform
