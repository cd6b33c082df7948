#include "companions/pageprobe/extractor_answer.h"

#include "platform/web_address.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace tollivar::probe {

using capture::MediaFound;

namespace {

constexpr double kLargestLength = 9e15;

/// The first line that is a JSON object; empty when none is.
QJsonObject firstObject(const QByteArray &answer)
{
    for (const QByteArray &line : answer.split('\n')) {
        const QJsonDocument document = QJsonDocument::fromJson(line);
        if (document.isObject()) {
            return document.object();
        }
    }
    return {};
}

bool isFetchedWhole(const QJsonObject &medium)
{
    const QString protocol = medium[u"protocol"].toString();
    const QString address = medium[u"url"].toString();
    const bool isWhole = protocol.isEmpty() || protocol == u"http" || protocol == u"https";
    return isWhole && platform::isWebAddress(address);
}

std::optional<std::int64_t> lengthOf(const QJsonObject &medium)
{
    const double size = medium[u"filesize"].toDouble(-1);
    return size >= 0 && size < kLargestLength ? std::optional(static_cast<std::int64_t>(size))
                                              : std::nullopt;
}

bool isAttribute(QStringView part)
{
    constexpr std::array<QStringView, 8> kAttributes = {u"domain",   u"path",   u"expires",
                                                        u"max-age",  u"secure", u"httponly",
                                                        u"samesite", u"version"};
    const qsizetype equals = part.indexOf(u'=');
    const QStringView name = (equals < 0 ? part : part.first(equals)).trimmed();
    return std::any_of(kAttributes.begin(), kAttributes.end(), [name](QStringView attribute) {
        return name.compare(attribute, Qt::CaseInsensitive) == 0;
    });
}

} // namespace

QStringList extractorArguments(const QString &address)
{
    return {
        QStringLiteral("--ignore-config"),
        QStringLiteral("--no-cache-dir"),
        QStringLiteral("--no-warnings"),
        QStringLiteral("--quiet"),
        QStringLiteral("--no-playlist"),
        QStringLiteral("--playlist-items"),
        QStringLiteral("1"),
        QStringLiteral("--socket-timeout"),
        QStringLiteral("10"),
        QStringLiteral("--use-extractors"),
        QStringLiteral("default,-generic"),
        // Picture and sound in one file, fetched as a whole: what one record can describe.
        QStringLiteral("--format"),
        QStringLiteral("best[protocol=https]/best[protocol=http]"),
        QStringLiteral("--dump-json"),
        QStringLiteral("--"),
        address,
    };
}

std::vector<MediaFound> readExtractorAnswer(const QByteArray &answer, const QString &address)
{
    const QJsonObject medium = firstObject(answer);
    const QString ending = medium[u"ext"].toString();
    if (!isFetchedWhole(medium) || medium[u"extractor_key"].toString() == u"Generic" ||
        ending.isEmpty()) {
        return {};
    }
    const QJsonObject headers = medium[u"http_headers"].toObject();
    const QString referer = headers[u"Referer"].toString();
    // Releases before July 2023 have the cookies among the headers.
    const QString cookies = medium[u"cookies"].toString(headers[u"Cookie"].toString());
    return {{.address = medium[u"url"].toString(),
             .title = medium[u"title"].toString(),
             .mediaType = {},
             .extension = QLatin1Char('.') + ending,
             .length = lengthOf(medium),
             .cookies = withoutCookieAttributes(cookies),
             .agent = headers[u"User-Agent"].toString(),
             .referer = referer.isEmpty() ? address : referer}};
}

QString withoutCookieAttributes(const QString &cookies)
{
    QStringList pairs;
    for (const QString &part : cookies.split(u';', Qt::SkipEmptyParts)) {
        if (part.contains(u'=') && !isAttribute(part)) {
            pairs.append(part.trimmed());
        }
    }
    return pairs.join(QStringLiteral("; "));
}

} // namespace tollivar::probe
