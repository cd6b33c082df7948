#pragma once

// Clang proves on these marks that what belongs to one thread, or to one lock, is only touched
// there; other compilers see nothing.
#if defined(__clang__)
#define TLV_THREAD_MARK(mark) __attribute__((mark))
#else
#define TLV_THREAD_MARK(mark)
#endif

/// A class that can be held: a lock, or the role of being one certain thread.
#define TLV_CAPABILITY(name) TLV_THREAD_MARK(capability(name))
/// A member that may only be touched while the capability is held.
#define TLV_GUARDED_BY(capability) TLV_THREAD_MARK(guarded_by(capability))
/// A function that may only be called while the capability is held.
#define TLV_REQUIRES(...) TLV_THREAD_MARK(requires_capability(__VA_ARGS__))
/// A function after which the capability is known to be held.
#define TLV_ASSERTS(...) TLV_THREAD_MARK(assert_capability(__VA_ARGS__))

namespace tollivar::platform {

/// The role of a thread that owns state without a lock.
///
/// Threads: any.
class TLV_CAPABILITY("role") ThreadRole {
public:
    ThreadRole() = default;
    ~ThreadRole() = default;
    ThreadRole(const ThreadRole &) = delete;
    ThreadRole &operator=(const ThreadRole &) = delete;

    /// Ends the program when another thread calls: going on would corrupt what the role guards.
    void assertHeld() const TLV_ASSERTS(this);
    [[nodiscard]] bool isHeld() const;
};

/// The thread that runs main(): all task state, all widgets, the database connection.
///
/// A class of the main thread marks its members TLV_GUARDED_BY(mainThread) and calls
/// mainThread.assertHeld() where others call in.
// A value by its use, and one word with the comments that name it.
// NOLINTNEXTLINE(readability-identifier-naming)
extern const ThreadRole mainThread;

} // namespace tollivar::platform
