#include "platform/remove_on_end.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>

#include <unistd.h>

namespace tollivar::platform {

namespace {

/// The pipe to whoever started us breaks a moment before their end is told.
constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};
/// As a shell tells of a program that a polite kill ended.
constexpr int kStatus = 128 + SIGTERM;

/// A signal handler can reach nothing but such values.
std::array<char, PATH_MAX> filePath{};

void removeAndEnd(int /*number*/)
{
    unlink(filePath.data());
    _exit(kStatus);
}

} // namespace

struct RemoveOnEnd::Private {
    std::array<struct sigaction, kSignals.size()> previous = {};
};

RemoveOnEnd::RemoveOnEnd(const QString &path) : d(std::make_unique<Private>())
{
    const QByteArray name = QFile::encodeName(path);
    filePath.fill('\0');
    if (static_cast<std::size_t>(name.size()) < filePath.size()) {
        std::copy(name.begin(), name.end(), filePath.begin());
    }
    struct sigaction action = {};
    action.sa_handler = removeAndEnd;
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals.at(i), &action, &d->previous.at(i));
    }
}

RemoveOnEnd::~RemoveOnEnd()
{
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals.at(i), &d->previous.at(i), nullptr);
    }
}

} // namespace tollivar::platform
