#pragma once

#include "companions/capture/media_found.h"
#include "platform/result.h"

#include <QString>
#include <QStringList>

namespace tollivar::probe {

/// Which way of looking comes first.
enum class ProbeMode {
    BrowserFirst, ///< "PARSE_MODE_IE7", and every mode that is not known
    ReadingFirst, ///< "PARSE_MODE_IE6": the second try, so it begins differently
};

/// What a caller asks PageProbe for.
struct ProbeArguments {
    QString address;
    ProbeMode mode = ProbeMode::BrowserFirst;
    /// Flash for "PARSE_TYPE_SWFAUTO", else video.
    capture::MediaPreference preference = capture::MediaPreference::Video;
};

/// Reads `-url ADDRESS -parsemode MODE -parsetype TYPE -sniffcache true|false`, in any order; mode
/// may stand behind its name without a blank. `arguments` begin behind the program's name.
/// Errors: AskUser when the address is missing, is no http or https address with a host, or an
///         argument is unknown or has no value.
[[nodiscard]] platform::Result<ProbeArguments> readProbeArguments(const QStringList &arguments);

} // namespace tollivar::probe
