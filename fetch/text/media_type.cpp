#include "fetch/text/media_type.h"

#include <QByteArray>

#include <algorithm>
#include <array>

namespace tollivar::fetch {

namespace {

struct MediaType {
    QByteArrayView name;
    QStringView ending;
};

constexpr std::array kMediaTypes = {
    MediaType{"application/ogg", u".ogg"},
    MediaType{"application/vnd.apple.mpegurl", u".m3u8"},
    MediaType{"application/vnd.rn-realmedia", u".rm"},
    MediaType{"application/x-mpegurl", u".m3u8"},
    MediaType{"application/x-shockwave-flash", u".swf"},
    MediaType{"audio/aac", u".aac"},
    MediaType{"audio/flac", u".flac"},
    MediaType{"audio/mp4", u".m4a"},
    MediaType{"audio/mpeg", u".mp3"},
    MediaType{"audio/ogg", u".ogg"},
    MediaType{"audio/wav", u".wav"},
    MediaType{"audio/webm", u".weba"},
    MediaType{"audio/x-ms-wma", u".wma"},
    MediaType{"audio/x-wav", u".wav"},
    MediaType{"video/3gpp", u".3gp"},
    MediaType{"video/mp2t", u".ts"},
    MediaType{"video/mp4", u".mp4"},
    MediaType{"video/mpeg", u".mpg"},
    MediaType{"video/ogg", u".ogv"},
    MediaType{"video/quicktime", u".mov"},
    MediaType{"video/webm", u".webm"},
    MediaType{"video/x-flv", u".flv"},
    MediaType{"video/x-m4v", u".m4v"},
    MediaType{"video/x-matroska", u".mkv"},
    MediaType{"video/x-ms-asf", u".asf"},
    MediaType{"video/x-ms-wmv", u".wmv"},
    MediaType{"video/x-msvideo", u".avi"},
};

} // namespace

QString typeForMedia(QByteArrayView mediaType)
{
    const qsizetype end = mediaType.indexOf(';');
    const QByteArray name =
        (end < 0 ? mediaType : mediaType.first(end)).toByteArray().trimmed().toLower();
    const auto *const found =
        std::find_if(kMediaTypes.begin(), kMediaTypes.end(),
                     [&name](const MediaType &known) { return known.name == name; });
    return found == kMediaTypes.end() ? QString() : found->ending.toString();
}

} // namespace tollivar::fetch
