#include "companions/pageprobe/probe_arguments.h"

#include "platform/web_address.h"

namespace tollivar::probe {

using capture::MediaPreference;
using platform::ErrorKind;
using platform::failure;
using platform::Result;

namespace {

constexpr QLatin1StringView kModeName("-parsemode");

ProbeMode modeOf(const QString &value)
{
    return value == u"PARSE_MODE_IE6" ? ProbeMode::ReadingFirst : ProbeMode::BrowserFirst;
}

/// Takes the mode off its name where no blank parts them.
QStringList withSeparateMode(const QStringList &arguments)
{
    QStringList separate;
    for (const QString &argument : arguments) {
        if (argument.startsWith(kModeName) && argument.size() > kModeName.size()) {
            separate << kModeName << argument.mid(kModeName.size());
        } else {
            separate << argument;
        }
    }
    return separate;
}

} // namespace

Result<ProbeArguments> readProbeArguments(const QStringList &arguments)
{
    const QStringList words = withSeparateMode(arguments);
    ProbeArguments read;
    for (qsizetype i = 0; i < words.size(); i += 2) {
        if (i + 1 == words.size()) {
            return failure(ErrorKind::AskUser, QStringLiteral("%1 has no value").arg(words[i]));
        }
        const QString &value = words[i + 1];
        if (words[i] == u"-url") {
            read.address = value;
        } else if (words[i] == kModeName) {
            read.mode = modeOf(value);
        } else if (words[i] == u"-parsetype") {
            read.preference =
                value == u"PARSE_TYPE_SWFAUTO" ? MediaPreference::Flash : MediaPreference::Video;
        } else if (words[i] != u"-sniffcache") { // Every run has a fresh cache anyway.
            return failure(ErrorKind::AskUser, QStringLiteral("unknown argument %1").arg(words[i]));
        }
    }
    if (!platform::isWebAddress(read.address)) {
        return failure(ErrorKind::AskUser,
                       QStringLiteral("-url needs an address that begins with http or https"));
    }
    return read;
}

} // namespace tollivar::probe
