#include "companions/capture/page_findings.h"
#include "tests/companions/capture/devtools_events.h"

#include <gmock/gmock.h>

namespace tollivar::capture {
namespace {

using namespace Qt::StringLiterals;
using test::devToolsEvent;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PageFindingsTest : public ::testing::Test {
protected:
    /// An answered request; what went over the wire stays unknown unless it is told.
    void answer(const QByteArray &id, const QByteArray &address)
    {
        m_findings.takeNetwork(devToolsEvent("Network.requestWillBeSent",
                                             R"({"requestId":")" + id + R"(","request":{"url":")" +
                                                 address + R"(","method":"GET","headers":{}}})"));
        m_findings.takeNetwork(devToolsEvent("Network.responseReceived",
                                             R"({"requestId":")" + id + R"(","response":{"url":")" +
                                                 address +
                                                 R"(","status":200,"mimeType":"video/mp4"}})"));
    }
    void wire(const QByteArray &id)
    {
        m_findings.takeNetwork(
            devToolsEvent("Network.requestWillBeSentExtraInfo",
                          R"({"requestId":")" + id + R"(","headers":{"Cookie":"wire=1"}})"));
    }
    bool offer(const QString &address)
    {
        return m_findings.takeOffered({.address = u"http://h/page"_s,
                                       .title = {},
                                       .isWholePage = true,
                                       .played = {},
                                       .offered = {address}},
                                      u"agent"_s);
    }

    PageFindings m_findings;
};

TEST_F(PageFindingsTest, aPlayedMediumIsNewsOnceAndKeepsItsLargestArea)
{
    EXPECT_TRUE(m_findings.takePlayed({{u"http://h/a"_s, 10}}));
    EXPECT_FALSE(m_findings.takePlayed({{u"http://h/a"_s, 90}}));
    EXPECT_FALSE(m_findings.takePlayed({{u"http://h/a"_s, 40}}));
    const auto played = m_findings.media({}).played;
    ASSERT_EQ(played.size(), 1U);
    EXPECT_EQ(played[0].area, 90);
}

TEST_F(PageFindingsTest, anOfferedMediumIsNewsOnceAndCarriesWhatTheBrowserWouldSay)
{
    EXPECT_TRUE(offer(u"http://h/a.mp4"_s));
    EXPECT_FALSE(offer(u"http://h/a.mp4"_s));
    const auto offered = m_findings.media({}).offered;
    ASSERT_EQ(offered.size(), 1U);
    EXPECT_EQ(offered[0].address, u"http://h/a.mp4");
    EXPECT_EQ(offered[0].sent.agent, u"agent");
    EXPECT_EQ(offered[0].sent.referer, u"http://h/page");
}

TEST_F(PageFindingsTest, aPageWithoutEndFillsNoMemory)
{
    for (int i = 0; i < 2'000; ++i) {
        const QString address = u"http://h/%1.mp4"_s.arg(i);
        m_findings.takePlayed({{address, 1}});
        offer(address);
    }
    EXPECT_EQ(m_findings.media({}).played.size(), 500U);
    EXPECT_EQ(m_findings.media({}).offered.size(), 500U);
}

TEST_F(PageFindingsTest, cookiesAreAskedForWhereTheWireDidNotTellThem)
{
    answer("1", "http://h/told.mp4");
    wire("1");
    answer("2", "http://h/a.mp4");
    offer(u"http://h/b.mp4"_s);
    EXPECT_THAT(m_findings.takeCookieQuestions(10),
                ElementsAre(u"http://h/a.mp4"_s, u"http://h/b.mp4"_s));
}

TEST_F(PageFindingsTest, anAddressIsAskedAboutOnce)
{
    answer("1", "http://h/a.mp4");
    offer(u"http://h/a.mp4"_s);
    EXPECT_THAT(m_findings.takeCookieQuestions(10), ElementsAre(u"http://h/a.mp4"_s));
    EXPECT_THAT(m_findings.takeCookieQuestions(10), IsEmpty());
}

TEST_F(PageFindingsTest, theLimitOfQuestionsHoldsOverAllCalls)
{
    answer("1", "http://h/a.mp4");
    answer("2", "http://h/b.mp4");
    EXPECT_THAT(m_findings.takeCookieQuestions(1), ElementsAre(u"http://h/a.mp4"_s));
    answer("3", "http://h/c.mp4");
    EXPECT_THAT(m_findings.takeCookieQuestions(2), ElementsAre(u"http://h/b.mp4"_s));
    EXPECT_THAT(m_findings.takeCookieQuestions(2), IsEmpty());
}

TEST_F(PageFindingsTest, askedCookiesFillInWhatIsMissingButNotWhatTheWireTold)
{
    answer("1", "http://h/a.mp4");
    answer("2", "http://h/told.mp4");
    wire("2");
    offer(u"http://h/b.mp4"_s);
    for (const QString &address : {u"http://h/a.mp4"_s, u"http://h/told.mp4"_s, u"http://h/b.mp4"_s,
                                   u"http://h/unknown.mp4"_s}) {
        m_findings.setCookies(address, u"asked=1"_s);
    }
    const PageMedia media = m_findings.media({});
    ASSERT_EQ(media.answered.size(), 2U);
    EXPECT_EQ(media.answered[0].sent.cookies, u"asked=1");
    EXPECT_EQ(media.answered[1].sent.cookies, u"wire=1");
    ASSERT_EQ(media.offered.size(), 1U);
    EXPECT_EQ(media.offered[0].sent.cookies, u"asked=1");
}

TEST_F(PageFindingsTest, mediaCarryTheTitle)
{
    EXPECT_EQ(m_findings.media(u"A harbour"_s).title, u"A harbour");
}

} // namespace
} // namespace tollivar::capture
