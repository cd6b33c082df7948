#include "samples/server/site_server.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>
#include <optional>
#include <thread>

namespace {

using tollivar::samples::SiteOptions;

std::optional<SiteOptions> readOptions()
{
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{QStringLiteral("port"), QStringLiteral("Listen on this port."),
                        QStringLiteral("NUMBER"), QStringLiteral("0")},
                       {QStringLiteral("throttle"), QStringLiteral("Send each answer this slowly."),
                        QStringLiteral("BYTES_PER_SECOND"), QStringLiteral("0")}});
    parser.process(*QCoreApplication::instance());
    bool isPort = false;
    bool isSpeed = false;
    const QString samples = QCoreApplication::applicationDirPath() + QStringLiteral("/samples/");
    const SiteOptions options{.pagesFolder = samples + QStringLiteral("site"),
                              .mediaFolder = samples + QStringLiteral("media"),
                              .port = parser.value(QStringLiteral("port")).toUShort(&isPort),
                              .bytesPerSecond =
                                  parser.value(QStringLiteral("throttle")).toUInt(&isSpeed)};
    return isPort && isSpeed && parser.positionalArguments().isEmpty() ? std::optional(options)
                                                                       : std::nullopt;
}

/// Whoever started us holds the other end: it is gone when the input ends.
void quitWithTheInput()
{
    while (std::getchar() != EOF) {
    }
    // Queued: the event loop ends on its own thread.
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

} // namespace

/// Serves the sample site beside the executable until its standard input ends; the site's address
/// is its first line of output.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const auto options = readOptions();
    if (!options) {
        std::fputs("usage: sample-site [--port NUMBER] [--throttle BYTES_PER_SECOND]\n", stderr);
        return 2;
    }
    tollivar::samples::SiteServer server(*options);
    if (!server.start()) {
        std::fputs("the sample site cannot listen\n", stderr);
        return 1;
    }
    std::printf("%s\n", server.address().constData());
    std::fflush(stdout);
    std::thread(quitWithTheInput).detach();
    return QCoreApplication::exec();
}
