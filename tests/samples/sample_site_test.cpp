#include "tests/support/sample_site.h"

#include <QElapsedTimer>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include <csignal>

namespace {

using namespace Qt::StringLiterals;
using tollivar::test::SampleSite;

constexpr int kLimitMs = 30'000;

/// Everything the site answers to these bytes.
QByteArray answerTo(const SampleSite &site, const QByteArray &request)
{
    QTcpSocket socket;
    socket.connectToHost(u"127.0.0.1"_s, site.port());
    EXPECT_TRUE(socket.waitForConnected(kLimitMs));
    socket.write(request);
    QByteArray answer;
    while (socket.waitForReadyRead(kLimitMs)) {
        answer += socket.readAll();
    }
    return answer;
}

QByteArray get(const SampleSite &site, const QByteArray &path, const QByteArray &headers = {})
{
    return answerTo(site, "GET " + path + " HTTP/1.1\r\nHost: x\r\n" + headers + "\r\n");
}

QByteArray bodyOf(const QByteArray &answer)
{
    return answer.mid(answer.indexOf("\r\n\r\n") + 4);
}

QByteArray statusOf(const QByteArray &answer)
{
    return answer.mid(9, 3);
}

QByteArray clipWithRange(const SampleSite &site, const QByteArray &range)
{
    return get(site, "/media/clip.mp4", "Range: bytes=" + range + "\r\n");
}

TEST(SampleSite, servesPagesAndMediaWithTheirTypes)
{
    const SampleSite site;
    const QByteArray page = get(site, "/video.html");
    EXPECT_EQ(statusOf(page), "200");
    EXPECT_TRUE(page.contains("Content-Type: text/html; charset=utf-8\r\n"));
    EXPECT_TRUE(page.contains("Harbour at dawn"));
    EXPECT_EQ(bodyOf(get(site, "/")), bodyOf(get(site, "/index.html")));
    EXPECT_TRUE(get(site, "/media/clip.mp4").contains("Content-Type: video/mp4\r\n"));
    EXPECT_TRUE(get(site, "/media/clip.webm").contains("Content-Type: video/webm\r\n"));
    EXPECT_TRUE(get(site, "/media/beep.mp3").contains("Content-Type: audio/mpeg\r\n"));
}

TEST(SampleSite, answersHeadWithTheHeadersAlone)
{
    const SampleSite site;
    const QByteArray answer = answerTo(site, "HEAD /media/clip.mp4 HTTP/1.1\r\n\r\n");
    EXPECT_EQ(statusOf(answer), "200");
    EXPECT_TRUE(answer.endsWith("\r\n\r\n"));
}

TEST(SampleSite, knowsNoHeadUnderTheNameThatSaysSo)
{
    const SampleSite site;
    EXPECT_EQ(statusOf(answerTo(site, "HEAD /no-head/clip.webm HTTP/1.1\r\n\r\n")), "405");
    EXPECT_EQ(statusOf(get(site, "/no-head/clip.webm")), "200");
}

TEST(SampleSite, servesRangesFromTheStartTheMiddleAndTheEnd)
{
    const SampleSite site;
    const QByteArray whole = bodyOf(get(site, "/media/clip.mp4"));
    const QByteArray size = QByteArray::number(whole.size());
    const QByteArray first = clipWithRange(site, "0-0");
    EXPECT_EQ(statusOf(first), "206");
    EXPECT_TRUE(first.contains("Content-Range: bytes 0-0/" + size));
    EXPECT_EQ(bodyOf(first), whole.left(1));
    EXPECT_EQ(bodyOf(clipWithRange(site, "1000-1999")), whole.mid(1000, 1000));
    EXPECT_EQ(bodyOf(clipWithRange(site, "1000-")), whole.mid(1000));
    EXPECT_EQ(bodyOf(clipWithRange(site, "-500")), whole.right(500));
    EXPECT_EQ(bodyOf(clipWithRange(site, "1000-999999999")), whole.mid(1000));
}

TEST(SampleSite, refusesARangeBeyondTheEnd)
{
    const SampleSite site;
    EXPECT_EQ(statusOf(clipWithRange(site, "999999999-")), "416");
    EXPECT_EQ(statusOf(clipWithRange(site, "-0")), "416");
}

TEST(SampleSite, answersARangeThatIsNoneWithTheWhole)
{
    const SampleSite site;
    for (const char *range : {"9-3", "x-y", "-", "0-1,3-4", "--5", "99999999999999999999-"}) {
        EXPECT_EQ(statusOf(clipWithRange(site, range)), "200") << range;
    }
}

TEST(SampleSite, handsTheProtectedClipOnlyToItsOwnPage)
{
    const SampleSite site;
    const QByteArray page = get(site, "/scripted.html");
    EXPECT_TRUE(page.contains("Set-Cookie: pass=open-sesame; HttpOnly; Path=/\r\n"));
    const QByteArray cookie = "Cookie: pass=open-sesame\r\n";
    const QByteArray referer = "Referer: http://127.0.0.1/scripted.html\r\n";
    EXPECT_EQ(statusOf(get(site, "/protected/clip.mp4")), "403");
    EXPECT_EQ(statusOf(get(site, "/protected/clip.mp4", cookie)), "403");
    EXPECT_EQ(statusOf(get(site, "/protected/clip.mp4", referer)), "403");
    EXPECT_EQ(statusOf(get(site, "/protected/clip.mp4", cookie + referer)), "200");
}

TEST(SampleSite, putsItsOtherNameIntoTheFramePage)
{
    const SampleSite site;
    EXPECT_TRUE(get(site, "/frame.html").contains(site.otherAddress(u"player.html"_s).toUtf8()));
}

TEST(SampleSite, sendsAMovedPageToItsNewPlace)
{
    const SampleSite site;
    const QByteArray answer = get(site, "/moved.html");
    EXPECT_EQ(statusOf(answer), "302");
    EXPECT_TRUE(answer.contains("Location: /video.html\r\n"));
}

TEST(SampleSite, servesNothingOutsideItsFolders)
{
    const SampleSite site;
    for (const char *path :
         {"/../site_server.cpp", "/../../Tollivar/PageProbe", "/media/../site/index.html",
          "/media/..%2Fsite%2Findex.html", "/..%2f..%2f..%2f..%2fetc%2fpasswd", "//etc/passwd",
          "/media//etc/passwd", "/%2e%2e/media/clip.mp4", "/media/..%5csite%5cindex.html",
          "/.hidden", "/media/", "/media", "/protected/../media/clip.mp4", "/C:/x",
          "/index.html%00.mp4", "/no-head/../site/index.html"}) {
        const QByteArray status = statusOf(get(site, path));
        EXPECT_TRUE(status == "404" || status == "403") << path << ": " << status.constData();
    }
}

TEST(SampleSite, refusesWhatIsNoRequestAndLivesOn)
{
    const SampleSite site;
    for (const char *request : {"\r\n\r\n", "GET\r\n\r\n", "POST / HTTP/1.1\r\n\r\n",
                                "GET / HTTP/1.1 more\r\n\r\n", "\x01\x02\xff\r\n\r\n"}) {
        EXPECT_EQ(statusOf(answerTo(site, request)), "400") << request;
    }
    EXPECT_EQ(statusOf(answerTo(site, "GET / HTTP/1.1\r\nno colon\r\n: none\r\n\r\n")), "200");
}

TEST(SampleSite, cutsOffARequestWithoutAnEnd)
{
    const SampleSite site;
    EXPECT_EQ(answerTo(site, "GET / HTTP/1.1\r\nX: " + QByteArray(200'000, 'x')), "");
    EXPECT_EQ(statusOf(get(site, "/")), "200");
}

TEST(SampleSite, sendsNoFasterThanItWasTold)
{
    const SampleSite site({u"--throttle"_s, u"200000"_s});
    QElapsedTimer timer;
    timer.start();
    const QByteArray body = bodyOf(get(site, "/media/clip.mp4"));
    EXPECT_GT(timer.elapsed(), 1000 * body.size() / 200'000 - 200);
    EXPECT_EQ(body.size(), bodyOf(get(SampleSite(), "/media/clip.mp4")).size());
}

TEST(SampleSite, refusesArgumentsItDoesNotUnderstand)
{
    SampleSite site;
    for (const QStringList &arguments :
         {QStringList{u"--port"_s, u"99999"_s}, QStringList{u"--throttle"_s, u"-1"_s},
          QStringList{u"folder"_s}}) {
        QProcess process;
        process.start(site.process().program(), arguments);
        ASSERT_TRUE(process.waitForFinished(kLimitMs));
        EXPECT_EQ(process.exitCode(), 2) << qPrintable(arguments.join(u' '));
    }
}

TEST(SampleSite, endsWhenItIsTerminated)
{
    SampleSite site;
    ASSERT_EQ(kill(static_cast<pid_t>(site.process().processId()), SIGTERM), 0);
    EXPECT_TRUE(site.process().waitForFinished(kLimitMs));
}

TEST(SampleSite, endsWithItsInputWhileAnAnswerIsUnderWay)
{
    SampleSite site({u"--throttle"_s, u"1000"_s});
    QTcpSocket socket;
    socket.connectToHost(u"127.0.0.1"_s, site.port());
    socket.write("GET /media/clip.mp4 HTTP/1.1\r\n\r\n");
    ASSERT_TRUE(socket.waitForReadyRead(kLimitMs));
    site.process().closeWriteChannel();
    EXPECT_TRUE(site.process().waitForFinished(kLimitMs));
    EXPECT_EQ(site.process().exitCode(), 0);
}

} // namespace
