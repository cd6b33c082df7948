#include "fetch/fetch_worker.h"
#include "fetch/output_file.h"
#include "fetch/rtmp_download.h"
#include "tests/support/event_recorder.h"
#include "tests/support/hanging_resolver.h"
#include "tests/support/idle_worker.h"
#include "tests/support/parser_script.h"
#include "tests/support/raw_server.h"
#include "tests/support/rtmp_server.h"
#include "tests/support/sample_site.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <condition_variable>
#include <future>
#include <random>
#include <thread>

namespace tollivar::fetch {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tasks::ErrorKind;
using tasks::TaskEventCode;

/// Stands before a server and holds its answers back after so many bytes.
class StallingRelay {
public:
    StallingRelay(quint16 upstream, qsizetype limit) : m_upstream(upstream), m_limit(limit) {}

    [[nodiscard]] QString address(const QString &path) const
    {
        return u"rtmp://127.0.0.1:%1/"_s.arg(m_server.port()) + path;
    }
    [[nodiscard]] bool wasAskedToPause() const { return m_wasAskedToPause; }

private:
    void play(const test::RawServer::Peer &client)
    {
        const int server = test::connectToLoopback(m_upstream);
        std::thread answers([&] { relayAnswers(server, client); });
        constexpr int kMost = 64 * 1024;
        for (QByteArray bytes; !(bytes = client.receive(kMost)).isEmpty();) {
            if (bytes.contains("pause")) {
                m_wasAskedToPause = true;
            }
            static_cast<void>(test::RawServer::Peer(server).send(bytes));
        }
        {
            const std::lock_guard lock(m_mutex);
            m_hasEnded = true;
        }
        m_changed.notify_all();
        test::endConnection(server);
        answers.join();
        test::closeConnection(server);
    }

    void relayAnswers(int server, const test::RawServer::Peer &client)
    {
        constexpr int kMost = 4 * 1024;
        qsizetype sent = 0;
        for (QByteArray bytes; !(bytes = test::RawServer::Peer(server).receive(kMost)).isEmpty();) {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [&] { return sent < m_limit || m_hasEnded; });
            lock.unlock();
            if (!client.send(bytes)) {
                return;
            }
            sent += bytes.size();
        }
    }

    quint16 m_upstream;
    qsizetype m_limit;
    std::atomic<bool> m_wasAskedToPause = false;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_hasEnded = false;
    test::RawServer m_server{[this](const test::RawServer::Peer &peer) { play(peer); }};
};

/// One download at a time into a folder of the test's own.
class RtmpDownload : public ::testing::Test {
protected:
    RtmpDownload()
    {
        m_worker.setOwner(m_events.port());
        m_task.strOutputFolder = m_sandbox.path() + u'/';
        m_task.strOutputName = u"clip"_s;
        m_task.nProtocol = 0;
    }

    StepResult download(const QString &address)
    {
        m_task.strDownloadUrl = address;
        const StepResult result = downloadRtmp(m_worker, m_task, platform::systemClock());
        QCoreApplication::processEvents();
        return result;
    }

    /// Stops the download as soon as the file has so many bytes, and gives the time it took to end.
    std::chrono::milliseconds stopWhen(const QString &address, const std::function<bool()> &isTime)
    {
        auto run = std::async(std::launch::async, [this, address] {
            m_task.strDownloadUrl = address;
            return downloadRtmp(m_worker, m_task, platform::systemClock());
        });
        while (!isTime() && run.wait_for(1ms) != std::future_status::ready) {
        }
        const auto begin = std::chrono::steady_clock::now();
        m_worker.stopEvent().set();
        EXPECT_EQ(run.get(), StepResult::Stopped);
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now() - begin);
    }

    [[nodiscard]] QString file() const { return m_sandbox.file(u"clip.flv"_s); }

    /// What ffprobe says of the file, as "key=value" lines.
    static QByteArray probe(const QString &path)
    {
        return test::runToEnd({u"ffprobe"_s, u"-v"_s, u"error"_s, u"-show_entries"_s,
                               u"format=duration:stream=codec_name"_s, u"-of"_s,
                               u"default=noprint_wrappers=1"_s, path});
    }

    /// Decodes every frame; the output is empty when nothing is wrong.
    static QByteArray decode(const QString &path)
    {
        return test::runToEnd({u"ffmpeg"_s, u"-nostdin"_s, u"-v"_s, u"error"_s, u"-i"_s, path,
                               u"-f"_s, u"null"_s, u"-"_s});
    }

    test::Sandbox m_sandbox;
    test::EventRecorder m_events;
    test::IdleWorker m_worker;
    tasks::TaskInfo m_task;
};

TEST_F(RtmpDownload, aRecordedStreamComesWhole)
{
    test::RtmpServer server;
    for (const QStringList &codecs :
         {QStringList{u"-c:v"_s, u"flv"_s, u"-c:a"_s, u"libmp3lame"_s},
          QStringList{u"-c:v"_s, u"libx264"_s, u"-pix_fmt"_s, u"yuv420p"_s, u"-c:a"_s, u"aac"_s}}) {
        const QString source = server.record(u"clip.flv"_s, codecs);
        m_task.bFileCreated = 0;
        m_task.strOutputName = u"clip"_s;
        QFile::remove(file());
        EXPECT_EQ(download(server.address(u"vod/clip.flv"_s)), StepResult::Done);
        EXPECT_EQ(decode(file()), QByteArray());
        EXPECT_EQ(probe(file()), probe(source));
        EXPECT_EQ(m_task.dwDownloadSize, static_cast<std::uint32_t>(QFileInfo(file()).size()));
    }
    EXPECT_TRUE(m_events.has(TaskEventCode::FileCreated));
}

TEST_F(RtmpDownload, aFullDiskIsAFailureEvenWhenOnlyTheLastPieceMeetsIt)
{
    test::RtmpServer server;
    const QString source =
        server.record(u"clip.flv"_s, {u"-c:v"_s, u"flv"_s, u"-c:a"_s, u"libmp3lame"_s}, 1);
    ASSERT_LT(QFileInfo(source).size(), qint64{OutputFile::kMaximumPiece});
    // Every write to this device fails as on a full disk.
    m_task.strOutputFolder = u"/dev/"_s;
    m_task.strOutputName = u"full"_s;
    m_task.strFileType.clear();
    m_task.bFileCreated = 1;
    EXPECT_EQ(download(server.address(u"vod/clip.flv"_s)), StepResult::Failed);
    EXPECT_EQ(m_worker.failure().kind, ErrorKind::None);
}

TEST_F(RtmpDownload, aStreamThatStopsMidwayAndStaysSilentIsKeptAsFinished)
{
    test::RtmpServer server;
    const QString source =
        server.record(u"clip.flv"_s, {u"-c:v"_s, u"flv"_s, u"-c:a"_s, u"libmp3lame"_s});
    constexpr qsizetype kLimit = 40'000;
    StallingRelay relay(server.port(), kLimit);
    m_task.strDownloadUrl = relay.address(u"vod/clip.flv"_s);
    EXPECT_EQ(downloadRtmp(m_worker, m_task, platform::systemClock(), 1s), StepResult::Done);
    EXPECT_TRUE(relay.wasAskedToPause());
    EXPECT_GT(QFileInfo(file()).size(), kLimit / 2);
    EXPECT_LT(QFileInfo(file()).size(), QFileInfo(source).size());
}

TEST_F(RtmpDownload, aStopWhileASilentStreamIsToGoOnEndsAtOnce)
{
    test::RtmpServer server;
    server.record(u"clip.flv"_s, {u"-c:v"_s, u"flv"_s, u"-c:a"_s, u"libmp3lame"_s});
    const StallingRelay relay(server.port(), 40'000);
    m_task.strDownloadUrl = relay.address(u"vod/clip.flv"_s);
    auto run = std::async(std::launch::async, [this] {
        return downloadRtmp(m_worker, m_task, platform::systemClock(), 1s);
    });
    test::waitUntil("the pause", [&] { return relay.wasAskedToPause(); });
    const auto begin = std::chrono::steady_clock::now();
    m_worker.stopEvent().set();
    EXPECT_EQ(run.get(), StepResult::Stopped);
    // The pause itself takes a second.
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 900ms);
}

TEST_F(RtmpDownload, piecesOfTheGreatestSizeComeWhole)
{
    test::RtmpServer server;
    // Noise in colours: each picture is a message of more than 100 KiB.
    const QString source =
        server.record(u"clip.flv"_s,
                      {u"-vf"_s, u"scale=640:360,noise=alls=100:allf=t"_s, u"-c:v"_s, u"flv"_s,
                       u"-q:v"_s, u"1"_s, u"-c:a"_s, u"libmp3lame"_s},
                      1);
    ASSERT_GT(QFileInfo(source).size(), 25 * 130 * 1'024);
    EXPECT_EQ(download(server.address(u"vod/clip.flv"_s)), StepResult::Done);
    EXPECT_EQ(decode(file()), QByteArray());
    EXPECT_EQ(probe(file()), probe(source));
}

TEST_F(RtmpDownload, theRecordsFieldsStandInForTheAddress)
{
    test::RtmpServer server;
    server.record(u"clip.flv"_s, {u"-c:v"_s, u"flv"_s, u"-c:a"_s, u"libmp3lame"_s}, 1);
    m_task.strApp = u"vod"_s;
    m_task.strTcUrl = server.address(u"vod"_s);
    m_task.strPlayPath = u"clip.flv"_s;
    m_task.strFlashVer = u"LNX 10,0,0,0"_s;
    m_task.strSwfUrl = u"http://a/p.swf"_s;
    m_task.strPageUrl = u"http://a/"_s;
    EXPECT_EQ(download(server.address(u"other/missing"_s)), StepResult::Done);
    EXPECT_GT(QFileInfo(file()).size(), 10'000);
}

TEST_F(RtmpDownload, aPageOfTheSampleSiteWhoseAnswerIsAStreamBecomesAFile)
{
    test::RtmpServer server;
    server.record(u"show.flv"_s, {u"-c:v"_s, u"flv"_s, u"-c:a"_s, u"libmp3lame"_s}, 2);
    const test::SampleSite site;
    const QString page = site.address(u"stream.html"_s);
    const test::ParserScript parser;
    parser.answer("PROTOCOL = 0\r\nURL = " + server.address(u"vod/show.flv"_s).toUtf8() +
                  "\r\nTYPE = Flash Video (*.flv)\r\nPAGEURL = " + page.toUtf8() + "\r\n\r\n");
    FetchWorker worker;
    worker.setOwner(m_events.port());
    m_task.strOriURL = page;
    worker.setRecord(m_task);
    std::thread([&worker] { worker.run(); }).join();
    m_events.waitForEnd();
    EXPECT_EQ(m_events.events().back().code, TaskEventCode::Completed);
    EXPECT_EQ(decode(m_sandbox.file(u"Evening show.flv"_s)), QByteArray());
}

TEST_F(RtmpDownload, aMissingStreamFailsOrEndsEmpty)
{
    test::RtmpServer server;
    static_cast<void>(download(server.address(u"vod/nothing.flv"_s)));
    EXPECT_EQ(m_worker.failure().kind, ErrorKind::None);
    EXPECT_EQ(QFileInfo(file()).size(), 0);
}

TEST_F(RtmpDownload, aLiveStreamReportsBytesAndIsKeptWhenTheServerGoes)
{
    auto server = std::make_unique<test::RtmpServer>();
    const auto publisher = server->publish(u"show"_s);
    const QString address = server->address(u"live/show"_s);
    auto run = std::async(std::launch::async, [&] {
        m_task.strDownloadUrl = address;
        return downloadRtmp(m_worker, m_task, platform::systemClock());
    });
    while (m_worker.progress().bytesDownloaded < 20'000 &&
           run.wait_for(1ms) != std::future_status::ready) {
    }
    EXPECT_EQ(m_worker.record().dwSize, tasks::kUnknownSize);
    EXPECT_EQ(m_worker.progress().percentHundredths, 0);
    server->stop();
    EXPECT_EQ(run.get(), StepResult::Done);
    EXPECT_GE(QFileInfo(file()).size(), 20'000);
    EXPECT_TRUE(probe(file()).contains("codec_name=flv1"));
}

TEST_F(RtmpDownload, aStopInMidStreamKeepsWhatCameAndItPlays)
{
    test::RtmpServer server;
    const auto publisher = server.publish(u"show"_s);
    const auto time = stopWhen(server.address(u"live/show"_s),
                               [this] { return m_worker.progress().bytesDownloaded > 20'000; });
    EXPECT_LT(time, 2s);
    EXPECT_GE(QFileInfo(file()).size(), 20'000);
    EXPECT_TRUE(probe(file()).contains("codec_name=mp3"));
}

TEST_F(RtmpDownload, aStopEndsAHandshakeThatIsNeverAnswered)
{
    const test::RawServer silent([](const auto &peer) { peer.stall(); });
    const auto time = stopWhen(u"rtmp://127.0.0.1:%1/a/b"_s.arg(silent.port()),
                               [&silent] { return silent.connections() > 0; });
    EXPECT_LT(time, 2s);
    EXPECT_EQ(QFileInfo(file()).size(), 0);
}

TEST_F(RtmpDownload, aStopEndsAConnectionToNowhere)
{
    const test::FullPort nowhere;
    const auto time = stopWhen(u"rtmp://127.0.0.1:%1/a/b"_s.arg(nowhere.port()), [&nowhere] {
        nowhere.waitForAttempt();
        return true;
    });
    EXPECT_LT(time, 2s);
}

TEST_F(RtmpDownload, aStopEndsALookUpThatIsNeverAnswered)
{
    const test::HangingResolver resolver;
    const auto time = stopWhen(u"rtmp://%1/a/b"_s.arg(resolver.host()),
                               [&resolver] { return resolver.waiting() > 0; });
    EXPECT_LT(time, 2s);
}

TEST_F(RtmpDownload, aStopThatCameBeforeEndsItAtOnceWithoutAFile)
{
    m_worker.stopEvent().set();
    EXPECT_EQ(download(u"rtmp://127.0.0.1/a/b"_s), StepResult::Stopped);
    EXPECT_FALSE(QFile::exists(file()));
}

TEST_F(RtmpDownload, nobodyThereIsAFailureWithoutAReasonOfItsOwn)
{
    EXPECT_EQ(download(u"rtmp://127.0.0.1:%1/a/b"_s.arg(test::freePort())), StepResult::Failed);
    EXPECT_EQ(m_worker.failure().kind, ErrorKind::None);
}

TEST_F(RtmpDownload, aFileThatCannotBeMadeIsItsOwnFailure)
{
    m_task.strOutputFolder = u"/proc/none/"_s;
    EXPECT_EQ(download(u"rtmp://127.0.0.1/a/b"_s), StepResult::Failed);
    EXPECT_EQ(m_worker.failure().kind, ErrorKind::CannotCreateFile);
}

TEST_F(RtmpDownload, absurdAddressesFail)
{
    for (const QString &address :
         {u""_s, u"rtmp://"_s, u"rtmp:///x"_s, u"http://127.0.0.1/"_s, u"rtmfp://127.0.0.1/a/b"_s,
          u"rtmp://127.0.0.1:99999999/a/b"_s, u"rtmp://a b/c/d"_s, u"rtmp://a\r\nb/c/d"_s,
          u"rtmp://"_s + QString(100'000, u'x')}) {
        m_task.bFileCreated = 1;
        EXPECT_EQ(download(address), StepResult::Failed) << address.left(40).toStdString();
    }
}

TEST_F(RtmpDownload, noDamagedServerDoesHarm)
{
    constexpr int kHandshake = 1'537;
    std::mt19937 random(20'110'101); // NOLINT: the same damage in every run
    std::atomic<unsigned> seed = 0;
    const test::RawServer server([&seed](const auto &peer) {
        std::mt19937 bytes(seed++);
        const auto garbage = [&bytes](int count) {
            QByteArray text(count, Qt::Uninitialized);
            std::generate(text.begin(), text.end(),
                          [&bytes] { return static_cast<char>(bytes()); });
            return text;
        };
        if (bytes() % 4 == 0) {
            // Not even a handshake.
            peer.send(garbage(static_cast<int>(bytes() % 4'000)));
            return;
        }
        if (!peer.receiveAll(kHandshake)) {
            return;
        }
        peer.send('\x03' + QByteArray(1'536, '\0') + QByteArray(1'536, '\0'));
        // Chunks with wild headers: absurd sizes, endless messages, cuts at any place.
        for (int chunk = 0; chunk < 20; ++chunk) {
            QByteArray header(1, static_cast<char>(2 + bytes() % 6));
            header += garbage(3) + garbage(static_cast<int>(bytes() % 3)) + '\0';
            header +=
                static_cast<char>(std::array{1, 3, 4, 5, 6, 8, 9, 17, 18, 20, 22}[bytes() % 11]);
            header += QByteArray(4, '\0');
            if (!peer.send(header + garbage(static_cast<int>(bytes() % 300)))) {
                return;
            }
        }
    });
    const QString address = u"rtmp://127.0.0.1:%1/app/stream"_s.arg(server.port());
    for (int session = 0; session < 1'000; ++session) {
        m_task.bFileCreated = 1;
        const StepResult result = download(address);
        ASSERT_TRUE(result == StepResult::Failed || result == StepResult::Done);
    }
    EXPECT_EQ(server.connections(), 1'000);
}

TEST_F(RtmpDownload, twentyAtOnceEndTogether)
{
    const test::RawServer silent([](const auto &peer) { peer.stall(); });
    const QString address = u"rtmp://127.0.0.1:%1/a/b"_s.arg(silent.port());
    constexpr int kDownloads = 20;
    std::vector<std::unique_ptr<test::IdleWorker>> workers;
    std::vector<std::future<StepResult>> runs;
    for (int i = 0; i < kDownloads; ++i) {
        workers.push_back(std::make_unique<test::IdleWorker>());
        runs.push_back(
            std::async(std::launch::async, [this, address, i, worker = workers.back().get()] {
                tasks::TaskInfo task = m_task;
                task.strOutputName = QString::number(i);
                task.strDownloadUrl = address;
                return downloadRtmp(*worker, task, platform::systemClock());
            }));
    }
    while (silent.connections() < kDownloads) {
        std::this_thread::yield();
    }
    const auto begin = std::chrono::steady_clock::now();
    for (const auto &worker : workers) {
        worker->stopEvent().set();
    }
    for (auto &run : runs) {
        EXPECT_EQ(run.get(), StepResult::Stopped);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
}

} // namespace
} // namespace tollivar::fetch
