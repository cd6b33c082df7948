#pragma once

#include "companions/capture/media_found.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace tollivar::probe {

/// How yt-dlp is asked for the one medium of an address, and how its answer is read. Pure.

/// The arguments behind the program's name. The address is the last one and never an option.
[[nodiscard]] QStringList extractorArguments(const QString &address);

/// The medium in the first JSON line of the answer; none when it is not fetched over HTTP, was found
/// by the generic extractor, or there is no such line. `address` is the page's.
[[nodiscard]] std::vector<capture::MediaFound> readExtractorAnswer(const QByteArray &answer,
                                                                   const QString &address);

/// The "name=value; name=value" of a request, out of cookies that are written with their attributes
/// ("a=1; Domain=.site.example; Path=/; Secure; b=2; …").
[[nodiscard]] QString withoutCookieAttributes(const QString &cookies);

} // namespace tollivar::probe
