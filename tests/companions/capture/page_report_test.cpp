#include "companions/capture/page_report.h"

#include <gmock/gmock.h>

namespace tollivar::capture {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(PageReport, readsWhatThePlayedElementsAre)
{
    const auto report = parsePageReport(QStringLiteral(
        R"({"address":"http://h/p","isWholePage":true,"title":"The\n title ",)"
        R"("played":[{"address":"http://h/a.mp4","area":76800}],"offered":["https://h/b.mp4"]})"));
    ASSERT_TRUE(report);
    EXPECT_EQ(report->address, u"http://h/p");
    EXPECT_TRUE(report->isWholePage);
    EXPECT_EQ(report->title, u"The title");
    ASSERT_EQ(report->played.size(), 1U);
    EXPECT_EQ(report->played[0].address, u"http://h/a.mp4");
    EXPECT_EQ(report->played[0].area, 76'800);
    EXPECT_THAT(report->offered, ElementsAre(QStringLiteral("https://h/b.mp4")));
}

TEST(PageReport, onlyWebAddressesComeThrough)
{
    const auto report = parsePageReport(QStringLiteral(
        R"({"played":[{"address":"blob:http://h/1"},{"address":"file:///etc/passwd"},{"address":7},)"
        R"({"address":"data:video/mp4,x"},5,null],)"
        R"("offered":["javascript:x","ftp://h/a.mp4","http://h/a b\r\nX: y",{},[]]})"));
    ASSERT_TRUE(report);
    EXPECT_THAT(report->played, IsEmpty());
    EXPECT_THAT(report->offered, IsEmpty());
}

TEST(PageReport, addressesThatBrowsersLeaveUnencodedComeThrough)
{
    const auto report =
        parsePageReport(QStringLiteral(R"({"offered":["https://h/a.mp4?size={1}|2&label=100%"]})"));
    ASSERT_TRUE(report);
    EXPECT_THAT(report->offered,
                ElementsAre(QStringLiteral("https://h/a.mp4?size={1}|2&label=100%")));
}

TEST(PageReport, areasAreNeverNegative)
{
    const auto report = parsePageReport(QStringLiteral(
        R"({"played":[{"address":"http://h/a","area":-5},{"address":"http://h/b","area":"x"}]})"));
    ASSERT_TRUE(report);
    ASSERT_EQ(report->played.size(), 2U);
    EXPECT_EQ(report->played[0].area, 0);
    EXPECT_EQ(report->played[1].area, 0);
}

TEST(PageReport, whatIsTooMuchIsLeftOut)
{
    QString played;
    for (int i = 0; i < 5'000; ++i) {
        played += QStringLiteral(R"({"address":"http://h/%1"},)").arg(i);
    }
    const QString longAddress = QStringLiteral("http://h/") + QString(20'000, u'x');
    const auto report =
        parsePageReport(QStringLiteral(R"({"title":"%1","offered":["%2"],"played":[%3{}]})")
                            .arg(QString(100'000, u't'), longAddress, played));
    ASSERT_TRUE(report);
    EXPECT_EQ(report->title.size(), 1'000);
    EXPECT_THAT(report->offered, IsEmpty());
    EXPECT_EQ(report->played.size(), 200U);
}

TEST(PageReport, otherTextsAreRefused)
{
    for (const char *text : {"", "[]", "null", "7", "\"x\"", "{", "{\"title\":}"}) {
        EXPECT_FALSE(parsePageReport(QString::fromLatin1(text))) << text;
    }
}

TEST(PageReport, everyCutIsRefused)
{
    const QString good = QStringLiteral(
        R"({"title":"t","played":[{"address":"http://h/a","area":1}],"offered":["http://h/b"]})");
    for (qsizetype i = 0; i < good.size(); ++i) {
        EXPECT_FALSE(parsePageReport(good.left(i))) << i;
    }
}

struct RefererCase {
    const char *name;
    const char16_t *page;
    const char16_t *address;
    const char16_t *referer;
};

void PrintTo(const RefererCase &row, std::ostream *out)
{
    *out << row.name;
}

class RefererFor : public ::testing::TestWithParam<RefererCase> {};

TEST_P(RefererFor, isAsTheTableSays)
{
    EXPECT_EQ(
        refererFor(QString::fromUtf16(GetParam().page), QString::fromUtf16(GetParam().address)),
        QString::fromUtf16(GetParam().referer));
}

constexpr std::array kCases = {
    RefererCase{"sameHost", u"http://h/p?q=1#f", u"http://h/a.mp4", u"http://h/p?q=1"},
    RefererCase{"otherHost", u"https://h/p?q=1", u"https://cdn/a.mp4", u"https://h/"},
    RefererCase{"otherPort", u"http://h:81/p", u"http://h:82/a.mp4", u"http://h:81/"},
    RefererCase{"towardsSafety", u"http://h/p", u"https://h/a.mp4", u"http://h/"},
    RefererCase{"awayFromSafety", u"https://h/p", u"http://h/a.mp4", u""},
    RefererCase{"withPassword", u"http://me:secret@h/p", u"http://h/a.mp4", u"http://h/p"},
    RefererCase{"noPage", u"about:blank", u"http://h/a.mp4", u""},
    RefererCase{"localPage", u"file:///p", u"http://h/a.mp4", u""},
    RefererCase{"brokenPage", u"http://", u"http://h/a.mp4", u""},
};

INSTANTIATE_TEST_SUITE_P(Table, RefererFor, ::testing::ValuesIn(kCases),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace
} // namespace tollivar::capture
