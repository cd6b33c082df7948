#include "tests/support/hanging_resolver.h"

#include <condition_variable>
#include <dlfcn.h>
#include <mutex>
#include <netdb.h>
#include <string_view>

namespace tollivar::test {

namespace {

/// What the function below can reach.
struct Hanging {
    std::mutex mutex;
    std::condition_variable changed;
    bool isOn = false;
    int waiting = 0;
};

Hanging &hanging()
{
    static Hanging state;
    return state;
}

/// True when the caller was held up.
bool hangOn(const char *name)
{
    Hanging &state = hanging();
    std::unique_lock lock(state.mutex);
    if (!state.isOn || name == nullptr || std::string_view(name) != "hangs.example") {
        return false;
    }
    ++state.waiting;
    state.changed.notify_all();
    state.changed.wait(lock, [&state] { return !state.isOn; });
    --state.waiting;
    state.changed.notify_all();
    return true;
}

} // namespace

HangingResolver::HangingResolver()
{
    const std::lock_guard lock(hanging().mutex);
    hanging().isOn = true;
}

HangingResolver::~HangingResolver()
{
    std::unique_lock lock(hanging().mutex);
    hanging().isOn = false;
    hanging().changed.notify_all();
    hanging().changed.wait(lock, [] { return hanging().waiting == 0; });
}

int HangingResolver::waiting() const
{
    const std::lock_guard lock(hanging().mutex);
    return hanging().waiting;
}

} // namespace tollivar::test

/// Found before the system's own function of that name, by us and by every library.
extern "C" __attribute__((visibility("default"))) int
getaddrinfo(const char *name, const char *service, const addrinfo *hints, addrinfo **result)
{
    using Function = int (*)(const char *, const char *, const addrinfo *, addrinfo **);
    if (tollivar::test::hangOn(name)) {
        return EAI_AGAIN;
    }
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return real(name, service, hints, result);
}
