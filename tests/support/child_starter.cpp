// Starts the command line in its first argument as a child process, writes the child's id and
// waits for ever: for tests that kill the starter.

#include "platform/child_process.h"

#include <cstdio>

#include <unistd.h>

int main(int argc, char **argv)
{
    const auto child =
        tollivar::platform::ChildProcess::start(QString::fromLocal8Bit(argc > 1 ? argv[1] : ""));
    if (!child) {
        return 1;
    }
    std::printf("%lld\n", static_cast<long long>((*child)->processId()));
    std::fflush(stdout);
    for (;;) {
        pause();
    }
}
