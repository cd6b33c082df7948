#include "platform/child_process.h"
#include "tests/companions/pageprobe/probe_run.h"
#include "tests/support/http_site.h"
#include "tests/support/sample_site.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tollivar::test::answer;
using tollivar::test::HttpPeer;
using tollivar::test::HttpSite;
using tollivar::test::neverAnswer;
using tollivar::test::ProbeResult;
using tollivar::test::ProbeSurroundings;
using tollivar::test::SampleSite;
using tollivar::test::waitUntil;

constexpr const char *kExtractorAnswer =
    R"(echo '{"url": "http://cdn.example/v.mp4", "ext": "mp4", "title": "From the site",)"
    R"( "protocol": "http", "extractor_key": "Site", "cookies": "a=1; Path=/"}')";

std::chrono::seconds secondsSince(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() -
                                                            begin);
}

TEST(PageProbe, saysNothingAndEndsWithTwoOnBadUsage)
{
    const ProbeSurroundings surroundings;
    for (const QStringList &arguments :
         {QStringList(), QStringList{u"--help"_s}, QStringList{u"-url"_s},
          QStringList{u"-url"_s, u"file:///etc/passwd"_s},
          QStringList{u"-url"_s, u"http://127.0.0.1/"_s, u"-unknown"_s, u"x"_s}}) {
        const ProbeResult result = surroundings.run(arguments);
        EXPECT_EQ(result.status, 2) << qPrintable(arguments.join(u' '));
        EXPECT_EQ(result.output, "");
    }
    EXPECT_TRUE(surroundings.log().contains("bad usage"));
}

TEST(PageProbe, endsWithOneWhereNobodyListens)
{
    quint16 port = 0;
    {
        const HttpSite closed;
        port = closed.port();
    }
    const ProbeSurroundings surroundings;
    const ProbeResult result = surroundings.probe(u"http://127.0.0.1:%1/"_s.arg(port));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
}

/// All limits of the ways to look come together here; the caller is promised 45 s.
TEST(PageProbe, endsInTimeWhenTheServerNeverAnswers)
{
    HttpSite site;
    site.on("/x", neverAnswer());
    const ProbeSurroundings surroundings;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(surroundings.probe(site.address("/x")).status, 1);
    EXPECT_LT(secondsSince(begin), 45s);
}

TEST(PageProbe, endsInTimeWhenAPageWithoutMediaNeverFinishes)
{
    HttpSite site;
    site.on("/page", [](HttpPeer &peer) {
        peer.send("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n\r\n<title>x</title>");
        peer.stall();
    });
    const ProbeSurroundings surroundings;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(surroundings.probe(site.address("/page")).status, 1);
    EXPECT_LT(secondsSince(begin), 45s);
}

TEST(PageProbe, survivesAPageThatBlocksItsScripts)
{
    HttpSite site;
    site.on("/page", answer("<title>x</title><script>for(;;);</script>", "text/html"));
    const ProbeSurroundings surroundings;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(surroundings.probe(site.address("/page")).status, 1);
    EXPECT_LT(secondsSince(begin), 45s);
}

TEST(PageProbe, keepsATitleOfManyLinesOnOne)
{
    HttpSite site;
    site.on("/page", answer("<title>a\r\n\r\nURL = http://evil.example/\r\n\r\nb</title>"
                            "<video src=clip.mp4></video>",
                            "text/html"));
    ProbeSurroundings surroundings;
    surroundings.setBrowser(u"/nonexistent"_s);
    const ProbeResult result = surroundings.probe(site.address("/page"));
    ASSERT_EQ(result.records.size(), 1U);
    EXPECT_EQ(result.records[0].title, u"a URL = http://evil.example/ b");
    EXPECT_EQ(result.records[0].address, site.address("/clip.mp4"));
}

/// Kills it at different moments: while the browser starts, loads, plays.
TEST(PageProbe, leavesNothingBehindWhenItIsKilled)
{
    const SampleSite site;
    for (const std::chrono::milliseconds moment : {0ms, 30ms, 100ms, 300ms, 800ms}) {
        const ProbeSurroundings surroundings;
        const auto child = surroundings.start({u"-url"_s, site.address(u"scripted.html"_s)});
        waitUntil("the profile", [&] { return !surroundings.leftFiles().isEmpty(); });
        std::this_thread::sleep_for(moment); // The moment itself is what varies.
        ASSERT_EQ(kill(static_cast<pid_t>(child->processId()), SIGKILL), 0);
    }
}

TEST(PageProbe, leavesNothingBehindWhenItIsTerminated)
{
    const SampleSite site;
    const ProbeSurroundings surroundings;
    const auto child = surroundings.start({u"-url"_s, site.address(u"scripted.html"_s)});
    waitUntil("the profile", [&] { return !surroundings.leftFiles().isEmpty(); });
    ASSERT_EQ(kill(static_cast<pid_t>(child->processId()), SIGTERM), 0);
}

TEST(PageProbe, takesTheAnswerOfAnInstalledExtractor)
{
    const SampleSite site;
    const ProbeSurroundings surroundings;
    surroundings.installExtractor(QByteArray("echo WARNING: noise >&2\n") + kExtractorAnswer);
    const ProbeResult result = surroundings.probe(site.address(u"video.html"_s));
    ASSERT_EQ(result.records.size(), 1U);
    EXPECT_EQ(result.records[0].address, u"http://cdn.example/v.mp4");
    EXPECT_EQ(result.records[0].title, u"From the site");
    EXPECT_EQ(result.records[0].cookies, u"a=1");
    EXPECT_EQ(result.records[0].referer, site.address(u"video.html"_s));
}

TEST(PageProbe, handsTheExtractorTheAddressAsOneWord)
{
    const SampleSite site;
    const ProbeSurroundings surroundings;
    surroundings.installExtractor(QByteArray("printf '%s\\n' \"$@\" >\"$NOTE\"\n") +
                                  kExtractorAnswer);
    const QString address = site.address(u"video.html?a=\"b\" c&d='$(reboot)';`x`\\"_s);
    EXPECT_EQ(surroundings.probe(address).status, 0);
    const QStringList words = QString::fromUtf8(surroundings.note()).split(u'\n');
    ASSERT_GT(words.size(), 3);
    EXPECT_EQ(words[words.size() - 3], u"--");
    EXPECT_EQ(words[words.size() - 2], address);
}

TEST(PageProbe, looksItselfWhereTheExtractorDoesNotKnowThePage)
{
    const SampleSite site;
    for (const char *script : {"echo 'ERROR: Unsupported URL' >&2; exit 1", "exit 0", "kill -9 $$",
                               "echo '{}'", "echo not json"}) {
        const ProbeSurroundings surroundings;
        surroundings.installExtractor(script);
        const ProbeResult result = surroundings.probe(site.address(u"video.html"_s));
        ASSERT_FALSE(result.records.empty()) << script;
        EXPECT_EQ(result.records[0].address, site.address(u"media/clip.mp4"_s)) << script;
    }
}

TEST(PageProbe, looksItselfWhereTheExtractorNeverEnds)
{
    const SampleSite site;
    const ProbeSurroundings surroundings;
    surroundings.installExtractor("/bin/sleep 1000 & /bin/sleep 1000");
    const ProbeResult result = surroundings.probe(site.address(u"video.html"_s));
    ASSERT_FALSE(result.records.empty());
    EXPECT_EQ(result.records[0].address, site.address(u"media/clip.mp4"_s));
    EXPECT_TRUE(surroundings.log().contains("takes too long"));
}

TEST(PageProbe, looksItselfWhereTheExtractorNeverFallsSilent)
{
    const SampleSite site;
    const ProbeSurroundings surroundings;
    surroundings.installExtractor("exec /bin/cat /dev/zero");
    const ProbeResult result = surroundings.probe(site.address(u"video.html"_s));
    ASSERT_FALSE(result.records.empty());
    EXPECT_TRUE(surroundings.log().contains("says too much"));
}

TEST(PageProbe, takesTheExtractorsHelpersAlongWhenItIsKilled)
{
    const SampleSite site;
    const ProbeSurroundings surroundings;
    surroundings.installExtractor("/bin/sleep 1000 & echo begun >\"$NOTE\"; /bin/sleep 1000");
    const auto child = surroundings.start({u"-url"_s, site.address(u"video.html"_s)});
    waitUntil("the helper", [&] { return surroundings.note() == "begun\n"; });
    ASSERT_EQ(kill(static_cast<pid_t>(child->processId()), SIGKILL), 0);
}

} // namespace
