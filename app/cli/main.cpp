#include "app/cli/cli_program.h"
#include "platform/log.h"
#include "platform/paths.h"

#include <QCoreApplication>
#include <QDir>

int main(int argc, char **argv)
{
    tollivar::platform::setUpLog();
    const QCoreApplication application(argc, argv);
    const QString callerDirectory = QDir::currentPath();
    // Companions are named relatively to the program.
    QDir::setCurrent(tollivar::platform::programDirectory());
    return tollivar::app::runCli(QCoreApplication::arguments().mid(1), callerDirectory);
}
