#include "fetch/http/http_client.h"
#include "tests/companions/pageprobe/probe_run.h"
#include "tests/support/sample_site.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

using namespace Qt::StringLiterals;
using tollivar::fetch::AnswerRecord;
using tollivar::fetch::HttpClient;
using tollivar::platform::AutoResetEvent;
using tollivar::test::ProbeResult;
using tollivar::test::ProbeSurroundings;
using tollivar::test::SampleSite;

/// A page, and the first record that it gives. In addresses, "this:" is the site and "other:" the
/// site under its other name.
struct SamplePage {
    const char *name;
    const char *page;
    const char *medium;
    const char *title;
    const char *type;
    const char *referer;
    const char *cookies;
};

void PrintTo(const SamplePage &row, std::ostream *out)
{
    *out << row.name;
}

class SamplePages : public ::testing::TestWithParam<SamplePage> {
protected:
    QString addressOf(const char *text) const
    {
        QString address = QString::fromLatin1(text);
        address.replace(u"this:"_s, m_site.address());
        return address.replace(u"other:"_s, m_site.otherAddress(QString()));
    }

    SampleSite m_site;
    ProbeSurroundings m_surroundings;
};

/// What a server answers when it is asked as the record says.
int statusOf(const AnswerRecord &record)
{
    QByteArray headers = "Accept: */*\r\nUser-Agent: " + record.agent.toUtf8() + "\r\n";
    if (!record.cookies.isEmpty()) {
        headers += "Cookie: " + record.cookies.toUtf8() + "\r\n";
    }
    if (!record.referer.isEmpty()) {
        headers += "Referer: " + record.referer.toUtf8() + "\r\n";
    }
    AutoResetEvent stop;
    const auto client = HttpClient::open({.address = record.address, .headers = headers}, stop);
    return client ? (*client)->statusCode() : 0;
}

TEST_P(SamplePages, giveTheirMediumAndHowToAskForIt)
{
    const SamplePage &expected = GetParam();
    const ProbeResult result =
        m_surroundings.probe(m_site.address(QString::fromLatin1(expected.page)));
    EXPECT_EQ(result.status, 0);
    ASSERT_FALSE(result.records.empty()) << m_surroundings.log().constData();
    const AnswerRecord &record = result.records.front();
    EXPECT_EQ(record.protocol, 1);
    EXPECT_EQ(record.address, addressOf(expected.medium));
    EXPECT_EQ(record.title, QString::fromLatin1(expected.title));
    EXPECT_EQ(record.typeDescription, QString::fromLatin1(expected.type));
    EXPECT_EQ(record.referer, addressOf(expected.referer));
    EXPECT_EQ(record.cookies, QString::fromLatin1(expected.cookies));
    EXPECT_TRUE(record.agent.startsWith(u"Mozilla/5.0 (")) << qPrintable(record.agent);
    EXPECT_FALSE(record.agent.contains(u"Headless"));
    EXPECT_EQ(statusOf(record), 200);
}

constexpr const char *kMp4 = "MP4 Video (*.mp4)";
constexpr const char *kWebm = "WEBM Video (*.webm)";

INSTANTIATE_TEST_SUITE_P(
    Site, SamplePages,
    ::testing::Values(
        SamplePage{"videoElement", "video.html", "this:media/clip.mp4", "Harbour at dawn", kMp4,
                   "this:video.html", ""},
        SamplePage{"sourceChildren", "sources.html", "this:media/clip.webm", "Rain on the roof",
                   kWebm, "this:sources.html", ""},
        SamplePage{"fetchedByScript", "scripted.html", "this:protected/clip.mp4",
                   "The locked garden", kMp4, "this:scripted.html", "pass=open-sesame"},
        SamplePage{"crossSiteFrame", "frame.html", "other:media/clip.mp4", "Window in a window",
                   kMp4, "other:player.html", ""},
        SamplePage{"amongDecoys", "decoys.html", "this:media/clip.mp4", "Find the clip", kMp4,
                   "this:decoys.html", ""},
        SamplePage{"besideFlash", "flash.html", "this:media/clip.mp4", "An old film", kMp4,
                   "this:flash.html", ""},
        SamplePage{"movedPage", "moved.html", "this:media/clip.mp4", "Harbour at dawn", kMp4,
                   "this:video.html", ""},
        SamplePage{"neverLoaded", "endless.html", "this:media/clip.mp4", "The long wait", kMp4,
                   "this:endless.html", ""},
        SamplePage{"onlyLinked", "linked.html", "this:media/clip.webm", "Take it home", kWebm,
                   "this:linked.html", ""},
        SamplePage{"onlyAnnounced", "announced.html", "this:media/clip.mp4", "Coming soon", kMp4,
                   "this:announced.html", ""},
        SamplePage{"directFile", "media/clip.webm", "this:media/clip.webm", "clip", kWebm, "", ""},
        SamplePage{"directFileWithoutHead", "no-head/clip.webm", "this:no-head/clip.webm", "clip",
                   kWebm, "", ""}),
    [](const auto &page) { return std::string(page.param.name); });

TEST_F(SamplePages, withoutMediaGiveNothing)
{
    for (const QString &page : {u"text.html"_s, u"missing.html"_s}) {
        const ProbeResult result = m_surroundings.probe(m_site.address(page));
        EXPECT_EQ(result.status, 1) << qPrintable(page);
        EXPECT_EQ(result.output, "") << qPrintable(page);
    }
}

TEST_F(SamplePages, giveFlashWhereItIsPreferred)
{
    const ProbeResult result = m_surroundings.probe(m_site.address(u"flash.html"_s),
                                                    {u"-parsetype"_s, u"PARSE_TYPE_SWFAUTO"_s});
    ASSERT_FALSE(result.records.empty());
    EXPECT_EQ(result.records[0].address, m_site.address(u"media/movie.swf"_s));
    EXPECT_EQ(result.records[0].extension, u".swf");
}

TEST_F(SamplePages, areReadFirstInTheSecondMode)
{
    // A browser that does not exist would be passed over silently; the log tells that nobody asked.
    m_surroundings.setBrowser(u"/nonexistent"_s);
    const ProbeResult result = m_surroundings.probe(
        m_site.address(u"video.html"_s),
        {u"-parsemodePARSE_MODE_IE6"_s, u"-parsetype"_s, u"X"_s, u"-sniffcache"_s, u"true"_s});
    ASSERT_EQ(result.records.size(), 1U);
    EXPECT_EQ(result.records[0].address, m_site.address(u"media/clip.mp4"_s));
    EXPECT_EQ(m_surroundings.log(), "");
}

TEST_F(SamplePages, areStillPlayedInTheSecondModeWhenReadingFindsNothing)
{
    const ProbeResult result = m_surroundings.probe(m_site.address(u"scripted.html"_s),
                                                    {u"-parsemode"_s, u"PARSE_MODE_IE6"_s});
    ASSERT_FALSE(result.records.empty());
    EXPECT_EQ(result.records[0].address, m_site.address(u"protected/clip.mp4"_s));
}

TEST_F(SamplePages, areReadWhereThereIsNoBrowser)
{
    m_surroundings.setBrowser(u"/nonexistent"_s);
    const ProbeResult result = m_surroundings.probe(m_site.address(u"video.html"_s));
    ASSERT_EQ(result.records.size(), 1U);
    EXPECT_EQ(result.records[0].address, m_site.address(u"media/clip.mp4"_s));
    EXPECT_EQ(result.records[0].title, u"Harbour at dawn");
    EXPECT_TRUE(m_surroundings.log().contains("browser"));
    EXPECT_EQ(m_surroundings.probe(m_site.address(u"text.html"_s)).status, 1);
}

} // namespace
