// A program that may run once, without a window: for tests of second starts.
//
// Takes its data directory in TOLLIVAR_TEST_DATA. Writes "first" or "end"; the first one goes on
// until it is killed, writing "front" when it is to show itself, and the address, or "nothing", for
// each command line that is handed to it. With TOLLIVAR_TEST_DEAF set, the first one never listens;
// with TOLLIVAR_TEST_HUNG it listens but never takes anything.

#include "app/command_line.h"
#include "app/second_start.h"
#include "platform/local_messages.h"

#include <QCoreApplication>

#include <cstdio>

#include <unistd.h>

namespace {

using namespace tollivar;

void say(const QString &line)
{
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

void take(platform::CopyDataId id, const QByteArray &payload)
{
    if (id == platform::CopyDataId::BringToFront) {
        say(QStringLiteral("front"));
    } else if (const auto arguments = app::readCommandLineMessage(payload)) {
        say(app::addressOf(*arguments).value_or(QStringLiteral("nothing")));
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const auto place = platform::instancePlace(qEnvironmentVariable("TOLLIVAR_TEST_DATA"));
    const auto check = app::checkSingleInstance(place, QCoreApplication::arguments());
    if (check.outcome == app::StartOutcome::End) {
        say(QStringLiteral("end"));
        return 0;
    }
    std::unique_ptr<platform::LocalMessageServer> server;
    if (!qEnvironmentVariableIsSet("TOLLIVAR_TEST_DEAF")) {
        auto listening = platform::LocalMessageServer::listen(place.socket, take);
        if (!listening) {
            say(listening.error().text);
            return 1;
        }
        server = std::move(*listening);
    }
    say(QStringLiteral("first"));
    if (qEnvironmentVariableIsSet("TOLLIVAR_TEST_HUNG")) {
        pause();
    }
    return QCoreApplication::exec();
}
