#include "companions/pageprobe/static_page.h"

#include "companions/capture/media_rank.h"
#include "companions/pageprobe/html_tags.h"
#include "companions/pageprobe/media_ending.h"
#include "platform/text_encoding.h"
#include "platform/web_address.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>
#include <set>

namespace tollivar::probe {

using capture::kindOf;
using capture::MediaFound;
using capture::MediaKind;
using capture::MediaPreference;

namespace {

constexpr int kDeepestMetadata = 20;
constexpr qsizetype kCharsetWithin = 2'048;

/// How the page names an address, from the surest to the vaguest.
enum class Naming { Plays, Links };

struct Named {
    MediaFound medium;
    MediaKind kind = MediaKind::None;
    Naming naming = Naming::Links;
};

/// Gathers the addresses of one page.
class PageReading {
public:
    explicit PageReading(const QString &address) : m_base(address) {}

    void take(const HtmlTag &tag)
    {
        const QString &name = tag.name;
        if (name == u"base") {
            takeBase(tag);
        } else if (name == u"title" && m_title.isEmpty()) {
            m_title = decodeReferences(tag.content).simplified();
        } else if (name == u"video" || name == u"audio" || name == u"source") {
            takeMedium(tag);
        } else if (name == u"embed" || name == u"object" || name == u"param") {
            takeEmbedded(tag);
        } else if (name == u"meta") {
            takeMeta(tag);
        } else if (name == u"a" || name == u"link") {
            add(tag.attribute(QStringLiteral("href")), tag.attribute(QStringLiteral("type")),
                Naming::Links);
        } else if (name == u"script" &&
                   tag.attribute(QStringLiteral("type")).toLower() == u"application/ld+json") {
            const auto document = QJsonDocument::fromJson(tag.content.toUtf8());
            takeMetadata(document.isArray() ? QJsonValue(document.array())
                                            : QJsonValue(document.object()),
                         0);
        }
    }

    [[nodiscard]] std::vector<MediaFound> result(MediaPreference preference) const
    {
        std::vector<Named> sorted = m_named;
        std::stable_sort(sorted.begin(), sorted.end(), [&](const Named &left, const Named &right) {
            return order(left, preference) < order(right, preference);
        });
        std::vector<MediaFound> media;
        for (Named &named : sorted) {
            named.medium.title = m_title;
            media.push_back(std::move(named.medium));
        }
        return media;
    }

private:
    static std::pair<int, Naming> order(const Named &named, MediaPreference preference)
    {
        const bool comesFirst =
            preference == MediaPreference::Flash && named.kind == MediaKind::Flash;
        return {comesFirst ? -1 : static_cast<int>(named.kind), named.naming};
    }

    void takeBase(const HtmlTag &tag)
    {
        const QString address = tag.attribute(QStringLiteral("href"));
        if (!m_hasBase && !address.isEmpty()) {
            m_base = m_base.resolved(QUrl(address.trimmed()));
            m_hasBase = true;
        }
    }

    /// A media element says by itself what its address is; the address need not look like it.
    void takeMedium(const HtmlTag &tag)
    {
        const QString source = tag.attribute(QStringLiteral("src"));
        add(source.isEmpty() ? tag.attribute(QStringLiteral("data-src")) : source,
            tag.attribute(QStringLiteral("type")), Naming::Plays,
            tag.name == u"audio" ? MediaKind::Audio : MediaKind::Video);
    }

    void takeEmbedded(const HtmlTag &tag)
    {
        const QString type = tag.attribute(QStringLiteral("type"));
        if (tag.name == u"embed") {
            add(tag.attribute(QStringLiteral("src")), type, Naming::Plays);
            takeVariables(tag.attribute(QStringLiteral("flashvars")));
        } else if (tag.name == u"object") {
            add(tag.attribute(QStringLiteral("data")), type, Naming::Plays);
        } else {
            takeParameter(tag.attribute(QStringLiteral("name")).toLower(),
                          tag.attribute(QStringLiteral("value")));
        }
    }

    void takeParameter(const QString &name, const QString &value)
    {
        if (name == u"movie" || name == u"src") {
            add(value, QString(), Naming::Plays);
        } else if (name == u"flashvars") {
            takeVariables(value);
        }
    }

    /// What a flash player is told, such as "file=clip.flv&autoplay=1".
    void takeVariables(const QString &variables)
    {
        const auto items = QUrlQuery(variables).queryItems(QUrl::FullyDecoded);
        for (const auto &[name, value] : items) {
            add(value, QString(), Naming::Plays);
        }
    }

    void takeMeta(const HtmlTag &tag)
    {
        const QString content = tag.attribute(QStringLiteral("content"));
        QString name = tag.attribute(QStringLiteral("property"));
        for (const QString &other : {QStringLiteral("name"), QStringLiteral("itemprop")}) {
            name = name.isEmpty() ? tag.attribute(other) : name;
        }
        name = name.toLower();
        if (name == u"og:video" || name == u"og:video:url" || name == u"og:video:secure_url" ||
            name == u"og:audio" || name == u"twitter:player:stream" || name == u"contenturl") {
            m_lastAnnounced = content;
            add(content, QString(), Naming::Plays);
        } else if (name == u"og:video:type" || name == u"twitter:player:stream:content_type") {
            add(m_lastAnnounced, content, Naming::Plays);
        }
    }

    void takeMetadata(const QJsonValue &value, int depth)
    {
        if (depth > kDeepestMetadata) {
            return;
        }
        for (const auto &item : value.toArray()) {
            takeMetadata(item, depth + 1);
        }
        const QJsonObject object = value.toObject();
        for (auto member = object.begin(); member != object.end(); ++member) {
            if (member.key() == u"contentUrl" && member.value().isString()) {
                add(member.value().toString(), object[u"encodingFormat"].toString(), Naming::Plays);
            } else {
                takeMetadata(member.value(), depth + 1);
            }
        }
    }

    /// `fallback` is what the address is when neither its type nor its ending says so.
    void add(const QString &text, const QString &type, Naming naming,
             MediaKind fallback = MediaKind::None)
    {
        if (text.trimmed().isEmpty()) {
            return;
        }
        const QUrl url = m_base.resolved(QUrl(text.trimmed()));
        const QString address = url.toString(QUrl::FullyEncoded | QUrl::RemoveFragment);
        if (!url.isValid() || !platform::isWebAddress(address)) {
            return;
        }
        const MediaKind told = kindOf(type, address);
        const MediaKind kind = told == MediaKind::None && type.isEmpty() ? fallback : told;
        if (!isMedium(kind) || !m_known.insert(address).second) {
            return;
        }
        m_named.push_back({.medium = {.address = address,
                                      .title = {},
                                      .mediaType = type,
                                      .extension = endingOfMedium(type, address)},
                           .kind = kind,
                           .naming = naming});
    }

    QUrl m_base;
    bool m_hasBase = false;
    QString m_title;
    QString m_lastAnnounced;
    std::vector<Named> m_named;
    std::set<QString> m_known;
};

/// The character set that the answer or the beginning of the page names; empty when none is.
QByteArray charsetOf(const StaticPage &page)
{
    const QByteArray text = (page.contentType + '\n' + page.bytes.left(kCharsetWithin)).toLower();
    const qsizetype place = text.indexOf("charset=");
    if (place < 0) {
        return {};
    }
    const QByteArray value = text.mid(place + 8).replace('"', "").replace('\'', "");
    const auto *const end = std::find_if(value.begin(), value.end(), [](char character) {
        return !(character >= 'a' && character <= 'z') && !(character >= '0' && character <= '9') &&
               character != '-' && character != '_';
    });
    return value.left(end - value.begin());
}

QString textOf(const StaticPage &page)
{
    const QByteArray charset = charsetOf(page);
    return charset.isEmpty() || charset == "utf-8" || charset == "utf8"
               ? platform::decodeUtf8OrLatin1(page.bytes)
               : platform::decodeNamed(page.bytes, charset);
}

} // namespace

std::vector<MediaFound> readStaticPage(const StaticPage &page, MediaPreference preference)
{
    PageReading reading(page.address);
    for (const HtmlTag &tag : readHtmlTags(textOf(page))) {
        reading.take(tag);
    }
    return reading.result(preference);
}

} // namespace tollivar::probe
