#include "fetch/text/site_url.h"

#include "platform/build_config.h"

#include <algorithm>
#include <array>

namespace tollivar::fetch {

namespace {

/// Quality 1 asks for high definition without naming a size.
constexpr int kQualityHighDefinition = 1;
constexpr int kFirstSizedQuality = 2;
constexpr std::array<QLatin1StringView, 5> kSizes = {
    QLatin1StringView("&vq=hd1080"), QLatin1StringView("&vq=hd720"), QLatin1StringView("&vq=large"),
    QLatin1StringView("&vq=medium"), QLatin1StringView("&vq=small"),
};

/// Characters of an address that name a page whose title is not known yet.
constexpr qsizetype kNameFromAddressEnd = 8;

/// What streams are fetched by is told apart by the scheme alone.
constexpr std::array kStreamSchemes = {
    QLatin1StringView("rtmp://"),   QLatin1StringView("rtmpt://"), QLatin1StringView("rtmpe://"),
    QLatin1StringView("rtmpte://"), QLatin1StringView("rtmps://"), QLatin1StringView("rtmpts://"),
};

} // namespace

QString addressForParser(const QString &address, int quality)
{
    const QString lower = address.toLower();
    if (!lower.contains(platform::build::kVideoSiteDomain)) {
        return address;
    }
    if (quality == kQualityHighDefinition) {
        return address + QStringLiteral("&hd=1");
    }
    const QLatin1StringView watch("watch?");
    const qsizetype place = lower.indexOf(watch);
    const auto size = static_cast<std::size_t>(quality - kFirstSizedQuality);
    if (place < 0 || quality < kFirstSizedQuality || size >= kSizes.size()) {
        return address;
    }
    return address.left(place) + QStringLiteral("watch_popup?") +
           address.mid(place + watch.size()) + kSizes.at(size);
}

bool isStreamAddress(const QString &address)
{
    return std::any_of(kStreamSchemes.begin(), kStreamSchemes.end(),
                       [&address](QLatin1StringView scheme) {
                           return address.startsWith(scheme, Qt::CaseInsensitive);
                       });
}

QString ensureScheme(const QString &address)
{
    const bool hasScheme = address.startsWith(u"http://", Qt::CaseInsensitive) ||
                           address.startsWith(u"https://", Qt::CaseInsensitive);
    return hasScheme || isStreamAddress(address) ? address : QStringLiteral("http://") + address;
}

std::optional<QString> watchPageId(const QString &address)
{
    for (const QLatin1StringView prefix : platform::build::kWatchPagePrefixes) {
        if (address.startsWith(prefix, Qt::CaseInsensitive) && address.size() > prefix.size()) {
            return address.mid(prefix.size());
        }
    }
    return std::nullopt;
}

QString nameBeforeTitle(const QString &address)
{
    return watchPageId(address).value_or(address.right(kNameFromAddressEnd));
}

} // namespace tollivar::fetch
