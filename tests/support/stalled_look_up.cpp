#include "tests/support/stalled_look_up.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <dlfcn.h>
#include <mutex>
#include <netdb.h>
#include <string_view>

namespace tollivar::test {

namespace {

struct Stall {
    std::mutex mutex;
    std::condition_variable changed;
    bool isOn = false;
    int waiting = 0;
};

/// Never destroyed: a look-up's thread may end after main().
Stall &stall()
{
    static auto *const shared = new Stall;
    return *shared;
}

/// Returns when no stall is on any more.
void waitForRelease()
{
    Stall &shared = stall();
    std::unique_lock lock(shared.mutex);
    ++shared.waiting;
    shared.changed.notify_all();
    shared.changed.wait(lock, [&shared] { return !shared.isOn; });
    --shared.waiting;
    shared.changed.notify_all();
}

} // namespace

StalledLookUp::StalledLookUp()
{
    const std::lock_guard lock(stall().mutex);
    stall().isOn = true;
}

StalledLookUp::~StalledLookUp()
{
    Stall &shared = stall();
    std::unique_lock lock(shared.mutex);
    shared.isOn = false;
    shared.changed.notify_all();
    shared.changed.wait(lock, [&shared] { return shared.waiting == 0; });
}

void StalledLookUp::waitUntilAsked() const
{
    std::unique_lock lock(stall().mutex);
    EXPECT_TRUE(stall().changed.wait_for(lock, std::chrono::seconds(30),
                                         [] { return stall().waiting > 0; }));
}

} // namespace tollivar::test

// The executable's own symbol comes before the system library's, for every library in the process.
extern "C" int getaddrinfo(const char *node, const char *service, const addrinfo *hints,
                           addrinfo **result)
{
    if (node != nullptr && std::string_view(node) == tollivar::test::StalledLookUp::kHost) {
        tollivar::test::waitForRelease();
        return EAI_AGAIN;
    }
    static const auto theirs =
        reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return theirs(node, service, hints, result);
}
