#include "platform/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace tollivar::platform {

bool errorIsTerminal()
{
    return isatty(STDERR_FILENO) == 1;
}

int errorTerminalColumns()
{
    constexpr int kUsualColumns = 80;
    winsize size{};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
        return kUsualColumns;
    }
    return size.ws_col;
}

} // namespace tollivar::platform
