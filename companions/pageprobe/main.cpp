#include "companions/pageprobe/page_probe.h"
#include "platform/log.h"

#include <QCoreApplication>

int main(int argc, char **argv)
{
    // Both output streams belong to the answer.
    tollivar::platform::logToFileOnly();
    const QCoreApplication application(argc, argv);
    return tollivar::probe::runPageProbe(QCoreApplication::arguments().mid(1));
}
