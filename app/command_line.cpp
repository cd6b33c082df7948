#include "app/command_line.h"

namespace tollivar::app {

using namespace Qt::StringLiterals;

namespace {

/// What a link "tollivar:ADDRESS" on a page hands over: the address in it, still to be checked.
QString addressInLink(const QString &value)
{
    constexpr auto kLink = "tollivar:"_L1;
    return value.startsWith(kLink, Qt::CaseInsensitive) ? value.mid(kLink.size()) : value;
}

} // namespace

std::optional<QString> addressOf(const QStringList &arguments)
{
    for (qsizetype i = 1; i + 1 < arguments.size(); i += 2) {
        if (arguments[i].compare(u"-url", Qt::CaseInsensitive) == 0) {
            return addressInLink(arguments[i + 1]);
        }
    }
    return std::nullopt;
}

} // namespace tollivar::app
