#include "platform/thread_role.h"

#include <QtGlobal>

#include <thread>

namespace tollivar::platform {

namespace {

// Objects of this lifetime are made before main() begins, on its thread.
const std::thread::id kMainThreadId = std::this_thread::get_id();

} // namespace

// NOLINTNEXTLINE(readability-identifier-naming): see the header.
const ThreadRole mainThread;

void ThreadRole::assertHeld() const
{
    if (!isHeld()) {
        qFatal("an object of the main thread is used by another thread");
    }
}

bool ThreadRole::isHeld() const
{
    return std::this_thread::get_id() == kMainThreadId;
}

} // namespace tollivar::platform
