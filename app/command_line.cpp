#include "app/command_line.h"

namespace tollivar::app {

std::optional<QString> addressOf(const QStringList &arguments)
{
    for (qsizetype i = 1; i + 1 < arguments.size(); i += 2) {
        if (arguments[i].compare(u"-url", Qt::CaseInsensitive) == 0) {
            return arguments[i + 1];
        }
    }
    return std::nullopt;
}

} // namespace tollivar::app
