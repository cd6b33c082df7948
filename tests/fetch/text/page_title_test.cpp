#include "fetch/text/page_title.h"

#include <gtest/gtest.h>

namespace tollivar::fetch {
namespace {

QString titleOf(const QByteArray &page)
{
    PageTitleReader reader;
    EXPECT_TRUE(reader.feed(page));
    return reader.title();
}

TEST(PageTitle, standsBetweenTheTwoTags)
{
    EXPECT_EQ(titleOf("<html><head><TITLE>A fine day</Title>"), QStringLiteral("A fine day"));
}

TEST(PageTitle, isFoundAcrossPieces)
{
    PageTitleReader reader;
    const QByteArray page = "<head><title>Cut in pieces</title>";
    for (qsizetype i = 0; i < page.size(); ++i) {
        if (reader.feed(page.mid(i, 1))) {
            break;
        }
    }
    EXPECT_EQ(reader.title(), QStringLiteral("Cut in pieces"));
}

TEST(PageTitle, anEarlierBareWordCounts)
{
    EXPECT_EQ(titleOf("<meta name=\"title\" content=\"X\"><title>Real</title>"),
              QStringLiteral("\" content=\"X\""));
}

TEST(PageTitle, referencesAreReplacedTheQuoteByASingleOne)
{
    EXPECT_EQ(titleOf("<title>&quot;Tom &amp; Jerry&quot;</title>"),
              QStringLiteral("'Tom & Jerry'"));
}

TEST(PageTitle, lineBreaksAndTabsAreBlanks)
{
    EXPECT_EQ(titleOf("<title>\r\n one\r\ntwo\tthree\n</title>"), QStringLiteral("one two three"));
}

TEST(PageTitle, bracketsAndSlashesGo)
{
    EXPECT_EQ(titleOf("<title>a</b>c</title>"), QStringLiteral("abc"));
}

TEST(PageTitle, anEmptyOneHasAName)
{
    EXPECT_EQ(titleOf("<title></title>"), QStringLiteral("Unknown Title Video"));
    EXPECT_EQ(titleOf("<title> \r\n </title>"), QStringLiteral("Unknown Title Video"));
}

TEST(PageTitle, isUtf8UnlessThePageNamesAnotherCharset)
{
    EXPECT_EQ(titleOf("<title>Gr\xC3\xBC\xC3\x9F\x65</title>"), QStringLiteral("Grüße"));
    EXPECT_EQ(titleOf("<meta charset=iso-8859-1><title>Gr\xFC\xDF\x65</title>"),
              QStringLiteral("Grüße"));
    EXPECT_EQ(titleOf("<meta charset=\"no-such\"><title>Gr\xFC\xDF\x65</title>"),
              QStringLiteral("Grüße"));
    EXPECT_EQ(titleOf("<meta charset=utf-8><title>Gr\xC3\xBC\xC3\x9F\x65</title>"),
              QStringLiteral("Grüße"));
}

TEST(PageTitle, aPageWithoutOneHasNone)
{
    PageTitleReader reader;
    EXPECT_FALSE(reader.feed("<html><body>nothing</body></html>"));
    EXPECT_FALSE(reader.feed("<title>never closed"));
}

TEST(PageTitle, anEndlessPageTakesNoMoreThanItsLimit)
{
    PageTitleReader reader;
    const QByteArray piece(1024 * 1024, 'x');
    for (int i = 0; i < 20; ++i) {
        EXPECT_FALSE(reader.feed(piece));
    }
    EXPECT_FALSE(reader.feed("<title>too late</title>"));
}

} // namespace
} // namespace tollivar::fetch
