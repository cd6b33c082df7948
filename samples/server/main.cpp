#include "samples/server/site_server.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdio>
#include <thread>

/// Serves the sample site beside the executable until its standard input ends; the site's address
/// is its first line of output.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/samples/");
    tollivar::samples::SiteServer server(folder + QStringLiteral("site"),
                                         folder + QStringLiteral("media"));
    if (!server.start()) {
        std::fputs("the sample site cannot listen\n", stderr);
        return 1;
    }
    std::printf("%s\n", server.address().constData());
    std::fflush(stdout);
    std::thread([] {
        while (std::getchar() != EOF) {
        }
        // Queued: the event loop ends on its own thread.
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    }).detach();
    return QCoreApplication::exec();
}
