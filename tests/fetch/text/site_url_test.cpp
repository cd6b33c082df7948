#include "fetch/text/site_url.h"

#include <gtest/gtest.h>

namespace tollivar::fetch {
namespace {

const QString kWatch = QStringLiteral("http://www.youtube.com/watch?v=abc");

TEST(SiteUrl, eachSizedQualityRewritesAWatchPage)
{
    const QString popup = QStringLiteral("http://www.youtube.com/watch_popup?v=abc");
    EXPECT_EQ(addressForParser(kWatch, 2), popup + QStringLiteral("&vq=hd1080"));
    EXPECT_EQ(addressForParser(kWatch, 3), popup + QStringLiteral("&vq=hd720"));
    EXPECT_EQ(addressForParser(kWatch, 4), popup + QStringLiteral("&vq=large"));
    EXPECT_EQ(addressForParser(kWatch, 5), popup + QStringLiteral("&vq=medium"));
    EXPECT_EQ(addressForParser(kWatch, 6), popup + QStringLiteral("&vq=small"));
}

TEST(SiteUrl, highDefinitionIsAppendedWhetherOrNotItIsAWatchPage)
{
    EXPECT_EQ(addressForParser(kWatch, 1), kWatch + QStringLiteral("&hd=1"));
    EXPECT_EQ(addressForParser(QStringLiteral("http://youtube.com/user"), 1),
              QStringLiteral("http://youtube.com/user&hd=1"));
}

TEST(SiteUrl, otherQualitiesAndOtherPagesChangeNothing)
{
    for (const int quality : {0, 7, -1, 1'000'000}) {
        EXPECT_EQ(addressForParser(kWatch, quality), kWatch);
    }
    EXPECT_EQ(addressForParser(QStringLiteral("http://youtube.com/user"), 3),
              QStringLiteral("http://youtube.com/user"));
}

TEST(SiteUrl, anAddressOfAnotherSiteIsUnchangedForEveryQuality)
{
    const QString other = QStringLiteral("http://example.org/watch?v=abc");
    for (int quality = 0; quality <= 6; ++quality) {
        EXPECT_EQ(addressForParser(other, quality), other);
    }
}

TEST(SiteUrl, theSiteAndItsPageAreFoundInAnyCase)
{
    EXPECT_EQ(addressForParser(QStringLiteral("HTTP://WWW.YOUTUBE.COM/WATCH?v=AbC"), 3),
              QStringLiteral("HTTP://WWW.YOUTUBE.COM/watch_popup?v=AbC&vq=hd720"));
}

TEST(SiteUrl, aMissingSchemeIsPutInFront)
{
    EXPECT_EQ(ensureScheme(QStringLiteral("a.org/x")), QStringLiteral("http://a.org/x"));
    EXPECT_EQ(ensureScheme(QStringLiteral("HTTPS://a.org")), QStringLiteral("HTTPS://a.org"));
    EXPECT_EQ(ensureScheme(QStringLiteral("http://a.org")), QStringLiteral("http://a.org"));
}

TEST(SiteUrl, aStreamKeepsItsOwnScheme)
{
    for (const char *scheme : {"rtmp", "rtmpe", "RTMPT", "rtmpte", "rtmps", "rtmpts"}) {
        const QString stream =
            QString::fromLatin1(scheme) + QStringLiteral("://media.example/app/show");
        EXPECT_TRUE(isStreamAddress(stream)) << scheme;
        EXPECT_EQ(ensureScheme(stream), stream);
    }
    for (const char *text : {"rtmp.example/page", "rtmp:show", "rtmpx://a.org/b", "rtmpd"}) {
        const QString address = QString::fromLatin1(text);
        EXPECT_FALSE(isStreamAddress(address)) << text;
        EXPECT_EQ(ensureScheme(address), QStringLiteral("http://") + address);
    }
}

TEST(SiteUrl, theIdIsWhatFollowsTheWatchPrefixParametersIncluded)
{
    EXPECT_EQ(watchPageId(kWatch), QStringLiteral("abc"));
    EXPECT_EQ(watchPageId(QStringLiteral("https://youtube.com/watch?v=Ab_c&t=4")),
              QStringLiteral("Ab_c&t=4"));
}

TEST(SiteUrl, withoutAnIdOrElsewhereThereIsNone)
{
    EXPECT_EQ(watchPageId(QStringLiteral("http://www.youtube.com/watch?v=")), std::nullopt);
    EXPECT_EQ(watchPageId(QStringLiteral("http://a.org/?u=http://www.youtube.com/watch?v=abc")),
              std::nullopt);
}

TEST(SiteUrl, aWatchPageIsCalledByItsIdAndAnyOtherByTheEndOfItsAddress)
{
    EXPECT_EQ(nameBeforeTitle(kWatch), u"abc");
    EXPECT_EQ(nameBeforeTitle(QStringLiteral("http://site.example/clips/a.html")), u"s/a.html");
    EXPECT_EQ(nameBeforeTitle(QStringLiteral("a.org")), u"a.org");
    EXPECT_EQ(nameBeforeTitle(QString()), u"");
}

} // namespace
} // namespace tollivar::fetch
