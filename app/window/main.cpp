#include "app/window/tollivar_app.h"
#include "platform/build_config.h"
#include "platform/log.h"

#include <QApplication>

int main(int argc, char **argv)
{
    tollivar::platform::setUpLog();
    const QApplication application(argc, argv);
    QApplication::setApplicationName(tollivar::platform::build::kProductName);
    // By this name the desktop knows whose windows these are.
    QApplication::setDesktopFileName(tollivar::platform::build::kApplicationId);
    QApplication::setApplicationVersion(tollivar::platform::build::kVersion);
    // The window hides to the tray; only the exit commands end the program.
    QApplication::setQuitOnLastWindowClosed(false);
    tollivar::app::CTollivarApp program(QApplication::arguments());
    program.InitInstance();
    program.ExitInstance();
    return 0;
}
