#include "companions/sniff_browser/sniff_browser.h"
#include "platform/log.h"

#include <QApplication>
#include <QIcon>

#include <cstdio>

int main(int argc, char **argv)
{
    constexpr int kBadUsage = 2;
    // Standard output belongs to the records.
    tollivar::platform::logToFileOnly();
    QApplication application(argc, argv);
    QApplication::setApplicationDisplayName(QStringLiteral("Tollivar"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/sniff_browser/browser.svg")));
    QApplication::setQuitOnLastWindowClosed(false);
    const auto arguments = tollivar::sniff::readSniffArguments(QApplication::arguments().mid(1));
    if (!arguments) {
        std::fprintf(stderr, "SniffBrowser: %s\n", qPrintable(arguments.error().text));
        return kBadUsage;
    }
    tollivar::sniff::SniffBrowser browser(*arguments);
    // quit() would ask the window to close, which may be what ended it.
    QObject::connect(
        &browser, &tollivar::sniff::SniffBrowser::ended, &application, [] { QApplication::exit(); },
        Qt::QueuedConnection);
    browser.panel().show();
    return QApplication::exec();
}
