#include "companions/pageprobe/extractor_answer.h"

#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;
using tollivar::probe::extractorArguments;
using tollivar::probe::readExtractorAnswer;
using tollivar::probe::withoutCookieAttributes;

const QString kPage = u"https://site.example/watch/1"_s;

constexpr const char *kAnswer =
    R"({"id": "1", "title": "A title", "url": "https://cdn.example/v.mp4?k=1", "ext": "mp4",
 "protocol": "https", "filesize": 12345, "extractor_key": "Site",
 "cookies": "k=v; Domain=.cdn.example; Path=/; Secure; Expires=1999999999; l=\"w x\"; Path=/",
 "http_headers": {"User-Agent": "Mozilla/5.0 X", "Referer": "https://site.example/", "Accept": "*/*"}})";

QByteArray oneLine(QByteArray json)
{
    return json.replace("\n", "") + "\n";
}

QByteArray with(const char *before, const char *after)
{
    QByteArray answer = oneLine(kAnswer);
    EXPECT_TRUE(answer.contains(before)) << before;
    return answer.replace(before, after);
}

TEST(ExtractorArguments, putTheAddressLastBehindTheEndOfOptions)
{
    for (const QString &address : {kPage, u"--exec=reboot"_s, u"-o/etc/passwd"_s, u"$(reboot)"_s}) {
        const QStringList arguments = extractorArguments(address);
        EXPECT_EQ(arguments.last(), address);
        EXPECT_EQ(arguments[arguments.size() - 2], u"--");
        EXPECT_EQ(arguments.count(u"--"_s), 1);
    }
}

TEST(ExtractorArguments, leaveTheGenericExtractorAndThePersonsConfigurationOut)
{
    const QStringList arguments = extractorArguments(kPage);
    EXPECT_TRUE(arguments.contains(u"--ignore-config"));
    EXPECT_EQ(arguments.value(arguments.indexOf(u"--use-extractors"_s) + 1), u"default,-generic");
}

TEST(ExtractorAnswer, becomesOneMedium)
{
    const auto media = readExtractorAnswer(oneLine(kAnswer), kPage);
    ASSERT_EQ(media.size(), 1U);
    EXPECT_EQ(media[0].address, u"https://cdn.example/v.mp4?k=1");
    EXPECT_EQ(media[0].title, u"A title");
    EXPECT_EQ(media[0].extension, u".mp4");
    EXPECT_EQ(media[0].length, 12345);
    EXPECT_EQ(media[0].cookies, u"k=v; l=\"w x\"");
    EXPECT_EQ(media[0].agent, u"Mozilla/5.0 X");
    EXPECT_EQ(media[0].referer, u"https://site.example/");
}

TEST(ExtractorAnswer, refersToThePageWhenItNamesNoReferer)
{
    EXPECT_EQ(readExtractorAnswer(with("\"Referer\"", "\"Other\""), kPage)[0].referer, kPage);
}

TEST(ExtractorAnswer, takesTheCookiesOfOlderReleasesFromTheHeaders)
{
    const QByteArray answer = with("\"Accept\": \"*/*\"", "\"Cookie\": \"old=1\"");
    EXPECT_EQ(readExtractorAnswer(answer, kPage)[0].cookies, u"k=v; l=\"w x\"");
    QByteArray older = answer;
    older.replace("\"cookies\"", "\"biscuits\"");
    EXPECT_EQ(readExtractorAnswer(older, kPage)[0].cookies, u"old=1");
}

TEST(ExtractorAnswer, hasNoLengthWhereNoneIsTold)
{
    EXPECT_FALSE(readExtractorAnswer(with("12345", "null"), kPage)[0].length);
    EXPECT_FALSE(readExtractorAnswer(with("12345", "-1"), kPage)[0].length);
    EXPECT_FALSE(readExtractorAnswer(with("12345", "1e300"), kPage)[0].length);
    EXPECT_FALSE(readExtractorAnswer(with("12345", "\"many\""), kPage)[0].length);
}

TEST(ExtractorAnswer, isFoundBehindWhateverElseIsSaid)
{
    const QByteArray noise = "WARNING: something\n[]\n{broken\n\n";
    EXPECT_EQ(readExtractorAnswer(noise + oneLine(kAnswer) + "more\n", kPage).size(), 1U);
}

TEST(ExtractorAnswer, isTheFirstOfSeveral)
{
    const QByteArray second = with("A title", "Another");
    EXPECT_EQ(readExtractorAnswer(oneLine(kAnswer) + second, kPage)[0].title, u"A title");
}

TEST(ExtractorAnswer, countsOnlyWhenASiteExtractorGaveIt)
{
    EXPECT_TRUE(readExtractorAnswer(with("\"Site\"", "\"Generic\""), kPage).empty());
}

TEST(ExtractorAnswer, countsOnlyWhenTheMediumIsFetchedWholeOverHttp)
{
    for (const char *protocol : {"m3u8_native", "http_dash_segments", "rtmp", "mhtml", "ism"}) {
        const QByteArray quoted = '"' + QByteArray(protocol) + '"';
        EXPECT_TRUE(readExtractorAnswer(with("\"https\"", quoted.constData()), kPage).empty())
            << protocol;
    }
    for (const char *address : {"rtmp://cdn.example/v", "file:///etc/passwd", "-o/tmp/x", ""}) {
        EXPECT_TRUE(
            readExtractorAnswer(with("https://cdn.example/v.mp4?k=1", address), kPage).empty())
            << address;
    }
}

TEST(ExtractorAnswer, isNothingWhenItIsNoSuchText)
{
    for (const QByteArray &answer :
         {QByteArray(), QByteArray("\n"), QByteArray("ERROR: Unsupported URL\n"),
          QByteArray("null"), QByteArray("{}"),
          QByteArray("[{\"url\":\"http://x/\",\"ext\":\"mp4\"}]"),
          QByteArray("{\"url\":[],\"ext\":{},\"http_headers\":7}"), QByteArray(10'000, '{'),
          QByteArray(10'000, '['), QByteArray("\0\0\0", 3)}) {
        EXPECT_TRUE(readExtractorAnswer(answer, kPage).empty()) << answer.left(40).constData();
    }
}

TEST(ExtractorAnswer, survivesEveryCutAndEveryFlippedByte)
{
    const QByteArray good = oneLine(kAnswer);
    for (qsizetype place = 0; place < good.size(); ++place) {
        EXPECT_LE(readExtractorAnswer(good.left(place), kPage).size(), 1U);
        QByteArray flipped = good;
        flipped[place] = static_cast<char>(flipped[place] ^ 0x21);
        EXPECT_LE(readExtractorAnswer(flipped, kPage).size(), 1U);
    }
}

TEST(CookieAttributes, areLeftOut)
{
    EXPECT_EQ(withoutCookieAttributes(u"a=1; Domain=.x.example; Path=/; Secure; HttpOnly; b=2"_s),
              u"a=1; b=2");
    EXPECT_EQ(withoutCookieAttributes(u"a=1; MAX-AGE=3;samesite=Lax; expires=Thu, 01 Jan 2030"_s),
              u"a=1");
    EXPECT_EQ(withoutCookieAttributes(u"a=1=2;b="_s), u"a=1=2; b=");
    EXPECT_EQ(withoutCookieAttributes(QString()), QString());
    EXPECT_EQ(withoutCookieAttributes(u";;; ;Secure;"_s), QString());
}

} // namespace
