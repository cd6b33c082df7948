#include "companions/pageprobe/static_page.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <ostream>

namespace {

using namespace Qt::StringLiterals;
using tollivar::capture::MediaFound;
using tollivar::capture::MediaPreference;
using tollivar::probe::readStaticPage;

std::vector<MediaFound> read(const QByteArray &html,
                             MediaPreference preference = MediaPreference::Video)
{
    return readStaticPage({.bytes = html,
                           .address = u"http://site.example/folder/page.html"_s,
                           .contentType = "text/html"},
                          preference);
}

QStringList addressesOf(const QByteArray &html, MediaPreference preference = MediaPreference::Video)
{
    QStringList addresses;
    for (const MediaFound &medium : read(html, preference)) {
        addresses.append(medium.address);
    }
    return addresses;
}

struct PageCase {
    const char *name;
    const char *html;
    const char *address; ///< of the one medium; empty when there is none
};

void PrintTo(const PageCase &row, std::ostream *out)
{
    *out << row.name;
}

class StaticPageForm : public ::testing::TestWithParam<PageCase> {};

TEST_P(StaticPageForm, namesItsMedium)
{
    const QStringList addresses = addressesOf(GetParam().html);
    const QString expected = QString::fromUtf8(GetParam().address);
    EXPECT_EQ(addresses, expected.isEmpty() ? QStringList() : QStringList{expected});
}

constexpr const char *kClip = "http://site.example/folder/clip.mp4";

INSTANTIATE_TEST_SUITE_P(
    Pages, StaticPageForm,
    ::testing::Values(
        PageCase{"video", "<video src=clip.mp4></video>", kClip},
        PageCase{"source", "<video><source src=clip.mp4 type=video/mp4></video>", kClip},
        PageCase{"lazyVideo", "<video data-src=clip.mp4></video>", kClip},
        PageCase{"videoWithoutEnding", "<video src='/get?id=1&amp;k=2'></video>",
                 "http://site.example/get?id=1&k=2"},
        PageCase{"typedSourceWithoutEnding", "<source src='/get' type='video/mp4; codecs=\"x\"'>",
                 "http://site.example/get"},
        PageCase{"audio", "<audio src=song.mp3></audio>", "http://site.example/folder/song.mp3"},
        PageCase{"link", "<a href=clip.mp4>keep</a>", kClip},
        PageCase{"rootedLink", "<a href='/m/clip.mp4'>", "http://site.example/m/clip.mp4"},
        PageCase{"schemelessLink", "<a href='//cdn.example/c.webm'>", "http://cdn.example/c.webm"},
        PageCase{"parentLink", "<a href='../c.webm?x#t=5'>", "http://site.example/c.webm?x"},
        PageCase{"preload", "<link rel=preload as=video href=clip.mp4>", kClip},
        PageCase{"openGraph", "<meta property='og:video' content='clip.mp4'>", kClip},
        PageCase{"openGraphTyped",
                 "<meta property=og:video:url content='https://c.example/v?1'>"
                 "<meta property=og:video:type content=video/mp4>",
                 "https://c.example/v?1"},
        PageCase{"openGraphPlayerPage",
                 "<meta property=og:video content='https://c.example/embed/1'>"
                 "<meta property=og:video:type content=text/html>",
                 ""},
        PageCase{"twitterStream", "<meta name='twitter:player:stream' content=clip.mp4>", kClip},
        PageCase{"microdata", "<meta itemprop=contentURL content=clip.mp4>", kClip},
        PageCase{"linkedData",
                 R"(<script type="application/ld+json">{"@type":"VideoObject",)"
                 R"("contentUrl":"clip.mp4"}</script>)",
                 kClip},
        PageCase{"linkedDataGraph",
                 R"(<script type='application/LD+json'>[{"@graph":[{"video":{"contentUrl":)"
                 R"("\/get","encodingFormat":"video\/mp4"}}]}]</script>)",
                 "http://site.example/get"},
        PageCase{"brokenLinkedData",
                 R"(<script type="application/ld+json">{"contentUrl":"clip.mp4"</script>)", ""},
        PageCase{"otherScript", R"(<script>{"contentUrl":"clip.mp4"}</script>)", ""},
        PageCase{"flashEmbed", "<embed src=movie.swf>", "http://site.example/folder/movie.swf"},
        PageCase{"flashObject", "<object data='/x' type=application/x-shockwave-flash></object>",
                 "http://site.example/x"},
        PageCase{"flashParameter", "<object><param NAME=Movie VALUE=movie.swf></object>",
                 "http://site.example/folder/movie.swf"},
        PageCase{"flashVariables", "<embed src=x flashvars='autoplay=1&amp;file=%2Fm%2Fclip.flv'>",
                 "http://site.example/m/clip.flv"},
        PageCase{"flashVariablesParameter",
                 "<param name=FlashVars value='file=http://c.example/a.flv'>",
                 "http://c.example/a.flv"},
        PageCase{"base", "<base href='https://c.example/b/'><video src=clip.mp4>",
                 "https://c.example/b/clip.mp4"},
        PageCase{"secondBaseIgnored",
                 "<base href='/b/'><base href='http://evil.example/'><video src=clip.mp4>",
                 "http://site.example/b/clip.mp4"},
        PageCase{"sameTwice", "<video src=clip.mp4><a href='./clip.mp4'>", kClip},
        PageCase{"pictures", "<img src=a.png><a href=a.jpg><source srcset=a.webp type=image/webp>",
                 ""},
        PageCase{"playlists",
                 "<video src=a.m3u8></video><source src='/list' type='application/x-mpegURL'>"
                 "<a href=a.mpd><meta property=og:video content='list.m3u8?t=1'>",
                 ""},
        PageCase{"playlistBesideItsFile", "<video><source src=a.m3u8><source src=clip.mp4></video>",
                 kClip},
        PageCase{"partsOfAStream", "<video src=1.ts></video><link rel=preload href=2.m4s>", ""},
        PageCase{"commentedOut", "<!-- <video src=clip.mp4> -->", ""},
        PageCase{"otherSchemes",
                 "<video src='blob:http://site.example/1'></video><video src='data:video/mp4,x'>"
                 "</video><a href='javascript:a.mp4'><a href='file:///clip.mp4'>"
                 "<video src='ftp://site.example/clip.mp4'></video>",
                 ""},
        PageCase{"emptySources", "<video src=''><source src=' '><embed src><a href>", ""},
        PageCase{"words", "<p>clip.mp4 http://site.example/clip.mp4</p>", ""},
        PageCase{"impossiblePort", "<video src='//site.example:port/clip.mp4'></video>", ""},
        PageCase{"noPage", "", ""}),
    [](const auto &page) { return std::string(page.param.name); });

TEST(StaticPage, tellsTitleTypeAndEnding)
{
    const auto media =
        read("<title> Harbour\n at   dawn &amp; dusk </title><source src=/get type=video/webm>");
    ASSERT_EQ(media.size(), 1U);
    EXPECT_EQ(media[0].title, u"Harbour at dawn & dusk");
    EXPECT_EQ(media[0].mediaType, u"video/webm");
    EXPECT_EQ(media[0].extension, u".webm");
}

TEST(StaticPage, namesNoEndingThatIsNoMediums)
{
    EXPECT_EQ(read("<video src=play.php>")[0].extension, QString());
    EXPECT_EQ(read("<video src=CLIP.MP4?x=y.php>")[0].extension, u".mp4");
}

TEST(StaticPage, putsVideoBeforeFlashBeforeSound)
{
    EXPECT_EQ(addressesOf("<audio src=/a.mp3><embed src=/b.swf><video src=/c.mp4>"),
              (QStringList{u"http://site.example/c.mp4"_s, u"http://site.example/b.swf"_s,
                           u"http://site.example/a.mp3"_s}));
}

TEST(StaticPage, putsFlashFirstWhereItIsPreferred)
{
    EXPECT_EQ(addressesOf("<video src=/c.mp4><embed src=/b.swf>", MediaPreference::Flash).first(),
              u"http://site.example/b.swf");
}

TEST(StaticPage, putsWhatItPlaysBeforeWhatItLinksTo)
{
    EXPECT_EQ(addressesOf("<a href=/other.mp4></a><video src=/get?id=1>"),
              (QStringList{u"http://site.example/get?id=1"_s, u"http://site.example/other.mp4"_s}));
}

TEST(StaticPage, keepsTheOrderOfEquals)
{
    EXPECT_EQ(addressesOf("<source src=/2.mp4><source src=/1.webm>"),
              (QStringList{u"http://site.example/2.mp4"_s, u"http://site.example/1.webm"_s}));
}

TEST(StaticPage, readsItsTextInTheCharacterSetThatIsNamed)
{
    const auto titleOf = [](const QByteArray &bytes, const QByteArray &type) {
        return readStaticPage({.bytes = bytes + "<video src=x.mp4>",
                               .address = u"http://site.example/"_s,
                               .contentType = type},
                              MediaPreference::Video)[0]
            .title;
    };
    EXPECT_EQ(titleOf("<title>\xd0\x9c\xd0\xb8\xd1\x80</title>", "text/html"), u"Мир");
    EXPECT_EQ(titleOf("<title>Gr\xf6\xdf"
                      "e</title>",
                      "text/html"),
              u"Größe");
    EXPECT_EQ(titleOf("<title>\x93\xfa</title>", "text/html; charset=\"Shift_JIS\""), u"日");
    EXPECT_EQ(titleOf("<meta charset='shift_jis'><title>\x93\xfa</title>", ""), u"日");
    EXPECT_EQ(titleOf("<title>ok</title>", "text/html; charset=no-such-thing"), u"ok");
}

TEST(StaticPage, survivesMetadataOfAnyDepth)
{
    const QByteArray deep = "<script type=application/ld+json>" + QByteArray(100'000, '[') +
                            QByteArray(100'000, ']') + "</script>";
    EXPECT_TRUE(read(deep).empty());
    const QByteArray nested = "<script type=application/ld+json>" +
                              QByteArray("{\"a\":").repeated(900) + "{\"contentUrl\":\"x.mp4\"}" +
                              QByteArray(900, '}') + "</script>";
    EXPECT_TRUE(read(nested).empty());
}

TEST(StaticPage, survivesEveryCutAndEveryFlippedByte)
{
    const QByteArray good =
        "<base href='/b/'><title>a&amp;b</title><video src='c.mp4' type=\"video/mp4\"></video>"
        "<embed flashvars='f=x.flv&amp;g=%41'><meta property=og:video content=d.mp4>"
        "<script type=application/ld+json>{\"contentUrl\":\"e.mp4\"}</script><!-- x --><a "
        "href=f.webm>";
    ASSERT_EQ(read(good).size(), 5U);
    for (qsizetype place = 0; place < good.size(); ++place) {
        EXPECT_LE(read(good.left(place)).size(), 5U);
        for (const char flip : {'\x01', '\x21', '\x80'}) {
            QByteArray flipped = good;
            flipped[place] = static_cast<char>(flipped[place] ^ flip);
            EXPECT_LE(read(flipped).size(), 6U);
        }
    }
}

} // namespace
