#include "fetch/http_download.h"
#include "tests/support/event_recorder.h"
#include "tests/support/hanging_resolver.h"
#include "tests/support/http_site.h"
#include "tests/support/idle_worker.h"
#include "tests/support/raw_server.h"
#include "tests/support/sandbox.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <future>

#include <sys/stat.h>

namespace tollivar::fetch {
namespace {

using tasks::ErrorKind;
using tasks::TaskEventCode;
using tasks::TaskInfo;

/// A clock that is a second further at each look, so that every round has something to report.
class HurryingClock final : public platform::Clock {
public:
    std::chrono::milliseconds steadyNow() const override
    {
        return std::chrono::milliseconds(m_now += 1'600);
    }
    QDateTime wallNow() const override { return {}; }

private:
    mutable std::atomic<int> m_now = 0;
};

class HttpDownload : public ::testing::Test {
protected:
    HttpDownload()
    {
        m_worker.setOwner(m_events.port());
        m_task.strOutputFolder = m_sandbox.path() + QLatin1Char('/');
        m_task.strOutputName = QStringLiteral("clip");
        m_task.strFileType = QStringLiteral(".mp4");
    }

    StepResult download(const QByteArray &path)
    {
        m_task.strDownloadUrl = m_site.address(path);
        m_worker.setRecord(m_task);
        const StepResult result = downloadHttp(m_worker, m_task, platform::systemClock());
        QCoreApplication::processEvents();
        return result;
    }

    test::Sandbox m_sandbox;
    test::HttpSite m_site;
    test::EventRecorder m_events;
    test::IdleWorker m_worker;
    TaskInfo m_task;
};

TEST_F(HttpDownload, aChunkedBodyComesWholeAndALengthBesideItIsNotBelieved)
{
    m_site.on("/v", [](test::HttpPeer &peer) {
        peer.send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nContent-Length: 3\r\n\r\n"
                  "5\r\nabcde\r\n2;note=x\r\nfg\r\n0\r\n\r\n");
    });
    EXPECT_EQ(download("/v"), StepResult::Done);
    EXPECT_EQ(m_sandbox.read(QStringLiteral("clip.mp4")), QByteArray("abcdefg"));
    EXPECT_EQ(m_task.dwSize, tasks::kUnknownSize);
}

TEST_F(HttpDownload, aBodyBecomesTheFile)
{
    const QByteArray body(100'000, 'v');
    m_site.on("/v", test::answer(body));

    EXPECT_EQ(download("/v"), StepResult::Done);

    EXPECT_EQ(m_sandbox.read(QStringLiteral("clip.mp4")), body);
    EXPECT_EQ(m_events.codes(), QStringLiteral("11 18"));
    EXPECT_EQ(m_events.events().front().value, 100'000U);
    EXPECT_EQ(m_task.dwSize, 100'000U);
    EXPECT_EQ(m_task.dwDownloadSize, 100'000U);
    EXPECT_EQ(m_task.bFileCreated, 1);
    const tasks::TaskProgress progress = m_worker.progress();
    EXPECT_EQ(progress.bytesDownloaded, 100'000U);
    EXPECT_EQ(progress.secondsLeft, 0);
    EXPECT_DOUBLE_EQ(progress.bytesPerSecond, 0);
}

TEST_F(HttpDownload, sendsRefererCookiesAndAgentInTheirOrder)
{
    m_site.on("/v", test::answer("x"));
    m_task.strReferer = QStringLiteral("http://page/");
    m_task.strCookies = QStringLiteral("a=b; c=d");
    m_task.strAgent = QStringLiteral("Agent 1");

    EXPECT_EQ(download("/v"), StepResult::Done);

    EXPECT_TRUE(m_site.requests().front().contains(
        "Accept: */*\r\nReferer: http://page/\r\nCookie: a=b; c=d\r\nUser-Agent: Agent 1\r\n"));
}

TEST_F(HttpDownload, withoutAnAgentTheDefaultIsSentAndKept)
{
    m_site.on("/v", test::answer("x"));

    EXPECT_EQ(download("/v"), StepResult::Done);

    EXPECT_TRUE(m_task.strAgent.startsWith(u"Mozilla/4.0 (compatible; MSIE 6.0;"));
    EXPECT_TRUE(m_site.requests().front().contains("User-Agent: " + m_task.strAgent.toUtf8()));
    EXPECT_FALSE(m_site.requests().front().contains("Cookie"));
    EXPECT_FALSE(m_site.requests().front().contains("Range"));
}

TEST_F(HttpDownload, aValueFromOutsideAddsNoHeader)
{
    m_site.on("/v", test::answer("x"));
    m_task.strCookies = QStringLiteral("a=b\r\nX-Injected: yes");

    EXPECT_EQ(download("/v"), StepResult::Done);

    EXPECT_FALSE(m_site.requests().front().contains("\r\nX-Injected"));
}

TEST_F(HttpDownload, withoutALengthTheSizeIsUnknown)
{
    m_site.on("/v", test::answerWithoutLength("some bytes"));
    m_task.strDownloadUrl = m_site.address("/v");

    EXPECT_EQ(downloadHttp(m_worker, m_task, HurryingClock()), StepResult::Done);
    QCoreApplication::processEvents();

    EXPECT_EQ(m_task.dwSize, tasks::kUnknownSize);
    EXPECT_EQ(m_events.events().front().value, tasks::kUnknownSize);
    EXPECT_TRUE(m_events.has(TaskEventCode::ProgressUnknownSize));
    EXPECT_FALSE(m_events.has(TaskEventCode::Progress));
    EXPECT_EQ(m_sandbox.read(QStringLiteral("clip.mp4")), QByteArray("some bytes"));
}

TEST_F(HttpDownload, withALengthProgressTellsTheBytes)
{
    m_site.on("/v", test::answer(QByteArray(50'000, 'v')));
    m_task.strDownloadUrl = m_site.address("/v");

    EXPECT_EQ(downloadHttp(m_worker, m_task, HurryingClock()), StepResult::Done);
    QCoreApplication::processEvents();

    EXPECT_TRUE(m_events.has(TaskEventCode::Progress));
    EXPECT_FLOAT_EQ(m_worker.progress().percentHundredths, 10'000.0F);
}

TEST_F(HttpDownload, aStatusOtherThan200IsKeptAndNoFileIsMade)
{
    EXPECT_EQ(download("/missing"), StepResult::Failed);

    EXPECT_EQ(m_worker.failure(),
              (tasks::TaskFailure{.kind = ErrorKind::HttpStatus, .httpStatus = 404}));
    EXPECT_TRUE(m_sandbox.read(QStringLiteral("clip.mp4")).isNull());
    EXPECT_TRUE(m_events.events().empty());
}

TEST_F(HttpDownload, aPartialAnswerIsAFailureToo)
{
    m_site.on("/part", test::answerStatus("206 Partial Content"));
    EXPECT_EQ(download("/part"), StepResult::Failed);
    EXPECT_EQ(m_worker.failure().httpStatus, 206U);
}

TEST_F(HttpDownload, aServerThatIsNotThereIsANetworkError)
{
    m_task.strDownloadUrl = QStringLiteral("http://127.0.0.1:1/v");
    EXPECT_EQ(downloadHttp(m_worker, m_task, platform::systemClock()), StepResult::Failed);
    EXPECT_EQ(m_worker.failure().kind, ErrorKind::Network);
}

TEST_F(HttpDownload, anEmptyBodyIsAnEmptyFile)
{
    m_site.on("/empty", test::answer({}));

    EXPECT_EQ(download("/empty"), StepResult::Done);

    EXPECT_TRUE(QFile::exists(m_sandbox.file(QStringLiteral("clip.mp4"))));
    EXPECT_EQ(m_task.dwSize, 0U);
}

TEST_F(HttpDownload, aCutBodyCountsAsFinishedAndKeepsTheAnnouncedSize)
{
    m_site.on("/cut", test::answerCut("half", 8));

    EXPECT_EQ(download("/cut"), StepResult::Done);

    EXPECT_EQ(m_task.dwSize, 8U);
    EXPECT_EQ(m_task.dwDownloadSize, 4U);
    EXPECT_EQ(m_sandbox.read(QStringLiteral("clip.mp4")), QByteArray("half"));
}

TEST_F(HttpDownload, aNameThatIsTakenIsNumberedAndTold)
{
    m_sandbox.write(QStringLiteral("clip.mp4"), "somebody else's");
    m_site.on("/v", test::answer("mine"));

    EXPECT_EQ(download("/v"), StepResult::Done);

    EXPECT_EQ(m_task.strOutputName, QStringLiteral("clip(0)"));
    EXPECT_EQ(m_worker.record().strOutputName, QStringLiteral("clip(0)"));
    EXPECT_EQ(m_events.codes(), QStringLiteral("11 18 13"));
    EXPECT_EQ(m_sandbox.read(QStringLiteral("clip.mp4")), QByteArray("somebody else's"));
    EXPECT_EQ(m_sandbox.read(QStringLiteral("clip(0).mp4")), QByteArray("mine"));
}

TEST_F(HttpDownload, aTypeWithTwoDotsStaysWholeWhenItsNameIsTaken)
{
    m_sandbox.write(QStringLiteral("clip.html.download"), "somebody else's");
    m_site.on("/v", test::answer("mine"));
    m_task.strFileType = QStringLiteral(".html.download");

    EXPECT_EQ(download("/v"), StepResult::Done);

    EXPECT_EQ(m_task.strOutputName, QStringLiteral("clip(0)"));
    EXPECT_EQ(m_sandbox.read(QStringLiteral("clip(0).html.download")), QByteArray("mine"));
}

TEST_F(HttpDownload, aRunAfterAFailureUsesTheNameThatTheFirstChose)
{
    m_sandbox.write(QStringLiteral("clip.mp4"), "somebody else's");
    m_site.on("/gone", test::answerStatus("404 Not Found"));
    m_site.on("/v", test::answer("mine, the first half"));
    EXPECT_EQ(download("/v"), StepResult::Done);
    EXPECT_EQ(download("/gone"), StepResult::Failed);
    m_site.on("/v", test::answer("mine"));

    EXPECT_EQ(download("/v"), StepResult::Done);

    EXPECT_EQ(m_task.strOutputName, QStringLiteral("clip(0)"));
    EXPECT_EQ(m_sandbox.read(QStringLiteral("clip(0).mp4")), QByteArray("mine"));
    EXPECT_FALSE(QFile::exists(m_sandbox.file(QStringLiteral("clip(1).mp4"))));
}

TEST_F(HttpDownload, aSecondRunTruncatesTheFileOfTheFirst)
{
    m_site.on("/long", test::answer("a long body"));
    m_site.on("/short", test::answer("short"));
    EXPECT_EQ(download("/long"), StepResult::Done);

    EXPECT_EQ(download("/short"), StepResult::Done);

    EXPECT_EQ(m_task.strOutputName, QStringLiteral("clip"));
    EXPECT_EQ(m_sandbox.read(QStringLiteral("clip.mp4")), QByteArray("short"));
}

TEST_F(HttpDownload, aFolderThatIsNotThereIsAFileThatCannotBeMade)
{
    m_site.on("/v", test::answer("x"));
    m_task.strOutputFolder = m_sandbox.file(QStringLiteral("missing/"));

    EXPECT_EQ(download("/v"), StepResult::Failed);
    EXPECT_EQ(m_worker.failure().kind, ErrorKind::CannotCreateFile);
}

TEST_F(HttpDownload, aFullDiskIsSaidInTheLogAndEndsNothing)
{
    // Every write to this device fails as on a full disk.
    m_task.strOutputFolder = QStringLiteral("/dev/");
    m_task.strOutputName = QStringLiteral("full");
    m_task.strFileType.clear();
    m_task.bFileCreated = 1;
    constexpr int kManySlices = 1'000'000;
    m_site.on("/v", test::answer(QByteArray(kManySlices, 'v'), "application/octet-stream"));

    testing::internal::CaptureStderr();
    EXPECT_EQ(download("/v"), StepResult::Done);

    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "a downloaded file could not be written to its end: No space left on device\n");
    EXPECT_EQ(m_task.dwDownloadSize, kManySlices);
}

TEST_F(HttpDownload, aBodyOverFourGibibytesArrivesWholeAndItsCounterSaturates)
{
    constexpr qint64 kPiece = 1024L * 1024;
    constexpr qint64 kLength = 4'100 * kPiece;
    m_site.on("/huge", [](test::HttpPeer &peer) {
        peer.send("HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(kLength) + "\r\n\r\n");
        const QByteArray piece(kPiece, 'v');
        for (qint64 sent = 0; sent < kLength && peer.send(piece); sent += kPiece) {
        }
    });
    // A pipe in the file's place takes the bytes without a disk to hold them.
    m_task.bFileCreated = 1;
    ASSERT_EQ(mkfifo(m_task.outputPath().toUtf8().constData(), 0600), 0);
    auto arrived = std::async(std::launch::async, [path = m_task.outputPath()] {
        QFile pipe(path);
        EXPECT_TRUE(pipe.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
        QByteArray buffer(kPiece, Qt::Uninitialized);
        qint64 whole = 0;
        for (qint64 count = 1; count > 0; whole += count) {
            count = pipe.read(buffer.data(), buffer.size());
        }
        return whole;
    });

    m_task.strDownloadUrl = m_site.address("/huge");
    EXPECT_EQ(downloadHttp(m_worker, m_task, HurryingClock()), StepResult::Done);

    EXPECT_EQ(arrived.get(), kLength);
    EXPECT_EQ(m_task.dwSize, tasks::kUnknownSize);
    EXPECT_EQ(m_task.dwDownloadSize, tasks::kUnknownSize - 1);
    EXPECT_EQ(m_worker.progress().bytesDownloaded, tasks::kUnknownSize - 1);
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_events.has(TaskEventCode::ProgressUnknownSize));
    EXPECT_FALSE(m_events.has(TaskEventCode::Progress));
}

TEST_F(HttpDownload, aTypeThatIsNotKnownComesFromTheAnswer)
{
    m_site.on("/v", test::answer("x", "video/webm"));
    m_task.strFileType.clear();

    EXPECT_EQ(download("/v"), StepResult::Done);

    EXPECT_EQ(m_task.strFileType, QStringLiteral(".webm"));
    EXPECT_TRUE(QFile::exists(m_sandbox.file(QStringLiteral("clip.webm"))));
    // What stores the record must hear of it.
    EXPECT_EQ(m_events.codes(), QStringLiteral("11 18 13"));
    EXPECT_EQ(m_worker.record().strFileType, QStringLiteral(".webm"));
}

TEST_F(HttpDownload, aNameWithADotKeepsItWithoutAType)
{
    m_sandbox.write(QStringLiteral("v1.2"), "there");
    m_site.on("/v", test::answer("x", "application/octet-stream"));
    m_task.strOutputName = QStringLiteral("v1.2");
    m_task.strFileType.clear();

    EXPECT_EQ(download("/v"), StepResult::Done);

    EXPECT_EQ(m_sandbox.read(m_task.strOutputName), QByteArray("x"));
    EXPECT_EQ(m_sandbox.read(QStringLiteral("v1.2")), QByteArray("there"));
}

TEST_F(HttpDownload, aLengthOf32BitsOrMoreIsUnknown)
{
    const auto sizeFor = [this](const QByteArray &length) {
        m_site.on("/big", [length](test::HttpPeer &peer) {
            peer.send("HTTP/1.1 200 OK\r\nContent-Length: " + length + "\r\n\r\nx");
        });
        EXPECT_EQ(download("/big"), StepResult::Done);
        return m_task.dwSize;
    };
    EXPECT_EQ(sizeFor("4294967294"), 4'294'967'294U);
    EXPECT_EQ(sizeFor("4294967295"), tasks::kUnknownSize);
    EXPECT_EQ(sizeFor("99999999999"), tasks::kUnknownSize);
}

TEST_F(HttpDownload, aStopWhileTheServerStallsKeepsWhatCame)
{
    m_site.on("/stall", test::answerStalled(QByteArray(20'000, 'v'), 1'000'000));
    m_task.strDownloadUrl = m_site.address("/stall");
    StepResult result = StepResult::Done;
    std::thread run([&] { result = downloadHttp(m_worker, m_task, platform::systemClock()); });
    m_site.waitForRequests(1);
    m_worker.stopEvent().set();
    run.join();

    EXPECT_EQ(result, StepResult::Stopped);
    EXPECT_FALSE(m_worker.stopEvent().isSet());
    EXPECT_EQ(m_worker.failure(), tasks::TaskFailure{});
}

/// Where a download can be held up before its first byte.
class HttpStop : public HttpDownload {
protected:
    /// Stops the download once `isHeldUp`; the case fails when that takes longer than a moment.
    void stopWhen(const QString &address, const std::function<bool()> &isHeldUp)
    {
        m_task.strDownloadUrl = address;
        auto run = std::async(std::launch::async, [this] {
            return downloadHttp(m_worker, m_task, platform::systemClock());
        });
        while (!isHeldUp() &&
               run.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
        }
        const auto begin = std::chrono::steady_clock::now();
        m_worker.stopEvent().set();
        EXPECT_EQ(run.get(), StepResult::Stopped);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    }
};

TEST_F(HttpStop, endsALookUpThatIsNeverAnswered)
{
    const test::HangingResolver resolver;
    stopWhen(QStringLiteral("http://%1/v").arg(resolver.host()),
             [&resolver] { return resolver.waiting() > 0; });
}

TEST_F(HttpStop, endsAConnectionToNowhere)
{
    const test::FullPort nowhere;
    stopWhen(QStringLiteral("http://127.0.0.1:%1/v").arg(nowhere.port()), [&nowhere] {
        nowhere.waitForAttempt();
        return true;
    });
}

TEST_F(HttpStop, endsATlsHandshakeThatIsNeverAnswered)
{
    std::atomic<bool> isGreeted = false;
    const test::RawServer silent([&isGreeted](const auto &peer) {
        isGreeted = !peer.receive(1).isEmpty();
        peer.stall();
    });
    stopWhen(QStringLiteral("https://127.0.0.1:%1/v").arg(silent.port()),
             [&isGreeted] { return isGreeted.load(); });
}

TEST_F(HttpStop, endsAServerThatTakesTheRequestAndSaysNothing)
{
    m_site.on("/v", test::neverAnswer());
    stopWhen(m_site.address("/v"), [this] { return !m_site.requests().empty(); });
}

} // namespace
} // namespace tollivar::fetch
