#include "companions/pageprobe/static_page.h"

#include "companions/capture/media_rank.h"
#include "companions/pageprobe/html_tags.h"
#include "fetch/text/media_type.h"
#include "platform/text_encoding.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <algorithm>
#include <set>

namespace tollivar::probe {

using capture::kindOf;
using capture::MediaFound;
using capture::MediaKind;
using capture::MediaPreference;

namespace {

constexpr int kDeepestMetadata = 20;

/// Gathers the addresses of one page.
class PageReading {
public:
    explicit PageReading(const QString &address) : m_base(address) {}

    void take(const HtmlTag &tag)
    {
        if (tag.name == u"base") {
            m_base = m_base.resolved(QUrl(tag.attribute(QStringLiteral("href"))));
        } else if (tag.name == u"title" && m_title.isEmpty()) {
            m_title = decodeReferences(tag.content).simplified();
        } else if (tag.name == u"video" || tag.name == u"audio" || tag.name == u"source" ||
                   tag.name == u"embed") {
            add(tag.attribute(QStringLiteral("src")), tag.attribute(QStringLiteral("type")));
        } else if (tag.name == u"object") {
            add(tag.attribute(QStringLiteral("data")), tag.attribute(QStringLiteral("type")));
        } else if (tag.name == u"param") {
            takeParameter(tag);
        } else if (tag.name == u"meta") {
            takeMeta(tag);
        } else if (tag.name == u"a") {
            add(tag.attribute(QStringLiteral("href")), QString());
        } else if (tag.name == u"script" &&
                   tag.attribute(QStringLiteral("type")) == u"application/ld+json") {
            takeMetadata(QJsonDocument::fromJson(tag.content.toUtf8()), 0);
        }
    }

    [[nodiscard]] std::vector<MediaFound> result(MediaPreference preference)
    {
        for (MediaFound &medium : m_media) {
            medium.title = m_title;
        }
        std::stable_sort(m_media.begin(), m_media.end(), [&](const auto &left, const auto &right) {
            return rank(left, preference) < rank(right, preference);
        });
        return std::move(m_media);
    }

private:
    static int rank(const MediaFound &medium, MediaPreference preference)
    {
        const MediaKind kind = kindOf(medium.mediaType, medium.address);
        return preference == MediaPreference::Flash && kind == MediaKind::Flash
                   ? -1
                   : static_cast<int>(kind);
    }

    void takeParameter(const HtmlTag &tag)
    {
        const QString name = tag.attribute(QStringLiteral("name")).toLower();
        if (name == u"movie" || name == u"src") {
            add(tag.attribute(QStringLiteral("value")), QString());
        }
    }

    void takeMeta(const HtmlTag &tag)
    {
        const QString property = tag.attribute(QStringLiteral("property")).toLower();
        if (property == u"og:video" || property == u"og:video:url" ||
            property == u"og:video:secure_url" || property == u"og:audio") {
            add(tag.attribute(QStringLiteral("content")), QString());
        }
    }

    void takeMetadata(const QJsonDocument &document, int depth)
    {
        takeValue(document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object()),
                  depth);
    }

    void takeValue(const QJsonValue &value, int depth)
    {
        if (depth > kDeepestMetadata) {
            return;
        }
        for (const auto &item : value.toArray()) {
            takeValue(item, depth + 1);
        }
        const QJsonObject object = value.toObject();
        for (auto member = object.begin(); member != object.end(); ++member) {
            if (member.key() == u"contentUrl") {
                add(member.value().toString(), object[u"encodingFormat"].toString());
            } else {
                takeValue(member.value(), depth + 1);
            }
        }
    }

    void add(const QString &address, const QString &type)
    {
        if (address.trimmed().isEmpty()) {
            return;
        }
        const QUrl url = m_base.resolved(QUrl(address.trimmed()));
        const bool isFetched = url.scheme() == u"http" || url.scheme() == u"https";
        const QString complete = url.toString(QUrl::FullyEncoded);
        if (!isFetched || kindOf(type, complete) == MediaKind::None ||
            !m_known.insert(complete).second) {
            return;
        }
        const QString byType = fetch::typeForMedia(type.toLatin1());
        const QString ending = QFileInfo(url.path()).suffix().toLower();
        m_media.push_back({.address = complete,
                           .title = {},
                           .mediaType = type,
                           .extension = byType.isEmpty() && !ending.isEmpty()
                                            ? QLatin1Char('.') + ending
                                            : byType});
    }

    QUrl m_base;
    QString m_title;
    std::vector<MediaFound> m_media;
    std::set<QString> m_known;
};

} // namespace

std::vector<MediaFound> readStaticPage(const QByteArray &page, const QString &address,
                                       MediaPreference preference)
{
    PageReading reading(address);
    for (const HtmlTag &tag : readHtmlTags(platform::decodeUtf8OrLatin1(page))) {
        reading.take(tag);
    }
    return reading.result(preference);
}

} // namespace tollivar::probe
