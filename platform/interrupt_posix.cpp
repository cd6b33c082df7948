#include "platform/interrupt.h"

#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace tollivar::platform {

namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

// A signal handler can reach nothing but such values.
std::atomic<int> writeEnd = -1;
std::atomic<int> exitStatus = 0;
std::atomic<bool> wasAsked = false;

void handleSignal(int /*number*/)
{
    if (wasAsked.exchange(true)) {
        _exit(exitStatus);
    }
    const char byte = 0;
    [[maybe_unused]] const auto written = write(writeEnd, &byte, 1);
}

} // namespace

struct InterruptWatch::Private {
    std::array<int, 2> pipe = {-1, -1};
    std::unique_ptr<QSocketNotifier> notifier;
    std::array<struct sigaction, kSignals.size()> previous = {};
};

InterruptWatch::InterruptWatch(int secondStatus, std::function<void()> onInterrupt)
    : d(std::make_unique<Private>())
{
    if (pipe2(d->pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // The signals keep their usual meaning.
    }
    writeEnd = d->pipe[1];
    exitStatus = secondStatus;
    wasAsked = false;
    d->notifier = std::make_unique<QSocketNotifier>(d->pipe[0], QSocketNotifier::Read);
    QObject::connect(d->notifier.get(), &QSocketNotifier::activated, d->notifier.get(),
                     [this, handler = std::move(onInterrupt)] {
                         d->notifier->setEnabled(false);
                         handler();
                     });
    struct sigaction action = {};
    action.sa_handler = handleSignal;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals.at(i), &action, &d->previous.at(i));
    }
}

InterruptWatch::~InterruptWatch()
{
    if (!d->notifier) {
        return;
    }
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals.at(i), &d->previous.at(i), nullptr);
    }
    d->notifier.reset();
    writeEnd = -1;
    close(d->pipe[0]);
    close(d->pipe[1]);
}

} // namespace tollivar::platform
