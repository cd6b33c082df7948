#include "companions/sniff_browser/sniff_arguments.h"

#include "platform/web_address.h"

namespace tollivar::sniff {

using platform::ErrorKind;
using platform::failure;

platform::Result<SniffArguments> readSniffArguments(const QStringList &arguments)
{
    SniffArguments read;
    for (qsizetype i = 0; i < arguments.size(); i += 2) {
        if (i + 1 == arguments.size()) {
            return failure(ErrorKind::AskUser, QStringLiteral("%1 has no value").arg(arguments[i]));
        }
        const QString &value = arguments[i + 1];
        if (arguments[i] == u"-parsemode") {
            read.recipient = Recipient::Reader;
        } else if (arguments[i] != u"-url") {
            return failure(ErrorKind::AskUser,
                           QStringLiteral("unknown argument %1").arg(arguments[i]));
        } else if (platform::isWebAddress(value)) {
            read.address = value;
        } else {
            return failure(ErrorKind::AskUser,
                           QStringLiteral("-url needs an address that begins with http or https"));
        }
    }
    return read;
}

} // namespace tollivar::sniff
