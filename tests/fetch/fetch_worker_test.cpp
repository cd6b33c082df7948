#include "fetch/fetch_worker.h"
#include "platform/worker_thread.h"
#include "tasks/api/download_mode.h"
#include "tests/support/event_recorder.h"
#include "tests/support/http_site.h"
#include "tests/support/parser_script.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tollivar::fetch {
namespace {

using tasks::DownloadMethod;
using tasks::ErrorKind;
using tasks::TaskEventCode;
using tasks::TaskInfo;
using tasks::TaskState;

/// A stop must not take longer, however slow the machine; a hang takes for ever.
constexpr std::chrono::seconds kPromptly{10};

class FetchWorkerRun : public ::testing::Test {
protected:
    FetchWorkerRun() : m_worker(std::make_shared<FetchWorker>())
    {
        m_worker->setOwner(m_events.port());
        m_worker->setTaskId(7);
        m_task.strOriURL = m_site.address("/page");
        m_task.strOutputFolder = m_sandbox.path() + QLatin1Char('/');
        m_task.strOutputName = QStringLiteral("old name");
        m_site.on("/page", test::answer("<title>A fine day</title>", "text/html"));
        m_site.on("/media", test::answer("the media"));
    }

    [[nodiscard]] QByteArray goodAnswer() const
    {
        return test::parserAnswer(m_site.address("/media"), "Video (*.mp4)");
    }

    void start()
    {
        m_worker->setRecord(m_task);
        m_worker->setState(TaskState::Started);
        m_thread = std::make_unique<platform::WorkerThread>([worker = m_worker] { worker->run(); });
        EXPECT_TRUE(m_thread->resume());
    }

    void run()
    {
        start();
        m_events.waitForEnd();
    }

    void stopAndExpectItAtOnce()
    {
        const auto asked = std::chrono::steady_clock::now();
        m_worker->setState(TaskState::Stopping);
        m_worker->stopEvent().set();
        m_events.waitForEnd();
        EXPECT_LT(std::chrono::steady_clock::now() - asked, kPromptly);
        EXPECT_EQ(m_events.events().back().code, TaskEventCode::Stopped);
        EXPECT_TRUE(m_thread->waitForEnd(kPromptly));
        EXPECT_EQ(m_worker->state(), TaskState::Stopping);
    }

    test::Sandbox m_sandbox;
    test::ParserScript m_parser;
    test::HttpSite m_site;
    test::EventRecorder m_events;
    std::shared_ptr<FetchWorker> m_worker;
    std::unique_ptr<platform::WorkerThread> m_thread;
    TaskInfo m_task;
};

TEST_F(FetchWorkerRun, takesAPageToAFileUnderItsTitle)
{
    m_parser.answer(goodAnswer());
    run();

    EXPECT_EQ(m_events.codes(), QStringLiteral("1 15 4 13 3 11 18 8"));
    EXPECT_EQ(m_events.events().front().task, 7U);
    EXPECT_EQ(m_sandbox.read(QStringLiteral("Afine day.mp4")), QByteArray("the media"));
    const TaskInfo record = m_worker->record();
    EXPECT_EQ(record.strOutputName, QStringLiteral("Afine day"));
    EXPECT_EQ(record.strFileType, QStringLiteral(".mp4"));
    EXPECT_EQ(record.nCompletedStatus, 1);
    EXPECT_EQ(m_worker->state(), TaskState::Downloading);
}

TEST_F(FetchWorkerRun, asksTheParserInTheNewWayFirstWhenTheBrowserIsNewOrUnknown)
{
    for (const int version : {-1, 7, 156}) {
        m_parser.forgetCalls();
        m_worker->setBrowserVersion(version);
        start();
        m_events.waitForEnd();
        test::waitUntil("two parser runs", [this] { return m_parser.calls().size() == 2; });
        EXPECT_EQ(m_parser.calls()[0].mid(2, 2), QByteArrayList({"-parsemode", "PARSE_MODE_IE7"}));
        EXPECT_EQ(m_parser.calls()[1][2], QByteArray("-parsemodePARSE_MODE_IE6"));
        ASSERT_TRUE(m_thread->waitForEnd(kPromptly));
    }
}

TEST_F(FetchWorkerRun, asksTheParserInTheOldWayFirstWhenTheBrowserIsOld)
{
    m_worker->setBrowserVersion(6);
    run();

    ASSERT_EQ(m_parser.calls().size(), 2);
    EXPECT_EQ(m_parser.calls()[0][3], QByteArray("PARSE_MODE_IE6"));
    EXPECT_EQ(m_parser.calls()[1][2], QByteArray("-parsemodePARSE_MODE_IE7"));
}

TEST_F(FetchWorkerRun, theMethodChoosesTheParseType)
{
    const auto typeFor = [this](DownloadMethod method) {
        m_parser.forgetCalls();
        m_task.nModeLow = static_cast<int>(method);
        start();
        EXPECT_TRUE(m_thread->waitForEnd(kPromptly));
        return m_parser.calls().front()[5];
    };
    EXPECT_EQ(typeFor(DownloadMethod::Video), QByteArray("PARSE_TYPE_FLVAUTO"));
    EXPECT_EQ(typeFor(DownloadMethod::VideoSite), QByteArray("PARSE_TYPE_YOUTUBE"));
    EXPECT_EQ(typeFor(DownloadMethod::Flash), QByteArray("PARSE_TYPE_SWFAUTO"));
}

TEST_F(FetchWorkerRun, aParserThatSucceedsOnTheSecondModeLeadsOn)
{
    m_parser.answerSecondTry(goodAnswer());
    run();

    EXPECT_EQ(m_events.codes(), QStringLiteral("1 15 4 13 3 11 18 8"));
}

TEST_F(FetchWorkerRun, aParserThatFindsNothingTwiceEndsParsingFailed)
{
    run();

    EXPECT_EQ(m_events.codes(), QStringLiteral("1 5"));
    EXPECT_EQ(m_worker->failure().kind, ErrorKind::NoAddress);
    m_worker->setState(TaskState::Failed);
    EXPECT_EQ(m_worker->previousState(), TaskState::ResolvingPage);
}

TEST_F(FetchWorkerRun, aPageIsAskedAgainForAnAddressThatMayHaveExpired)
{
    m_parser.answer(goodAnswer());
    m_task.strDownloadUrl = m_site.address("/expired");
    run();

    EXPECT_EQ(m_events.codes(), QStringLiteral("1 15 4 13 3 11 18 8"));
    EXPECT_EQ(m_worker->record().strDownloadUrl, m_site.address("/media"));
}

TEST_F(FetchWorkerRun, anEarlierAddressServesWhereTheParserFindsNoneNow)
{
    m_task.strDownloadUrl = m_site.address("/media");
    run();

    EXPECT_EQ(m_events.codes().split(QLatin1Char(' ')).last(), QStringLiteral("8"));
}

TEST_F(FetchWorkerRun, aDirectFileIsNeitherParsedNorNamed)
{
    m_task.nModeLow = static_cast<int>(DownloadMethod::Direct);
    m_task.strDownloadUrl = m_site.address("/media");
    m_task.strFileType = QStringLiteral(".mp4");
    run();

    EXPECT_EQ(m_events.codes(), QStringLiteral("3 11 18 8"));
    EXPECT_TRUE(m_parser.calls().isEmpty());
    EXPECT_EQ(m_sandbox.read(QStringLiteral("old name.mp4")), QByteArray("the media"));
}

TEST_F(FetchWorkerRun, aFailedTitleLeavesTheOldName)
{
    m_site.on("/page", test::answerStatus("500 Broken"));
    m_parser.answer(goodAnswer());
    run();

    EXPECT_EQ(m_events.codes(), QStringLiteral("1 15 4 3 11 18 8"));
    EXPECT_EQ(m_worker->record().strOutputName, QStringLiteral("old name"));
}

TEST_F(FetchWorkerRun, aRestartedTaskWhoseFileExistsKeepsItsName)
{
    m_parser.answer(goodAnswer());
    m_task.bFileCreated = 1;
    m_sandbox.write(QStringLiteral("old name.mp4"), "a longer earlier run");
    run();

    EXPECT_EQ(m_events.codes(), QStringLiteral("1 15 4 3 11 18 8"));
    EXPECT_EQ(m_sandbox.read(QStringLiteral("old name.mp4")), QByteArray("the media"));
}

TEST_F(FetchWorkerRun, aNameOfItsOwnIsNotReplacedByTheTitle)
{
    m_parser.answer(goodAnswer());
    m_task.bAutoRename = 0;
    run();

    EXPECT_EQ(m_worker->record().strOutputName, QStringLiteral("old name"));
}

TEST_F(FetchWorkerRun, aFailedDownloadSaysSo)
{
    m_parser.answer(goodAnswer());
    m_site.on("/media", test::answerStatus("404 Not Found"));
    run();

    EXPECT_EQ(m_events.codes(), QStringLiteral("1 15 4 13 3 6"));
    EXPECT_EQ(m_worker->failure().httpStatus, 404U);
    EXPECT_EQ(m_worker->record().nCompletedStatus, 0);
}

TEST_F(FetchWorkerRun, aRetryWaitsOutItsPauseBeforeItBegins)
{
    m_parser.answer(goodAnswer());
    m_worker->setRetryAttempt(1);
    m_worker->setRetryPause(std::chrono::seconds(1));
    const auto begin = std::chrono::steady_clock::now();
    run();

    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
    EXPECT_EQ(m_events.codes(), QStringLiteral("1 15 4 13 3 11 18 8"));
}

TEST_F(FetchWorkerRun, aStopDuringTheRetryPausePostsOnlyStopped)
{
    m_worker->setRetryAttempt(1);
    m_worker->setRetryPause(std::chrono::hours(1));
    start();
    stopAndExpectItAtOnce();

    EXPECT_EQ(m_events.codes(), QStringLiteral("9"));
    EXPECT_TRUE(m_parser.calls().isEmpty());
}

TEST_F(FetchWorkerRun, aStopWhileTheParserRunsEndsBoth)
{
    m_parser.hang();
    start();
    test::waitUntil("the parser", [this] { return !m_parser.calls().isEmpty(); });
    stopAndExpectItAtOnce();

    EXPECT_EQ(m_events.codes(), QStringLiteral("1 9"));
}

TEST_F(FetchWorkerRun, aStopWhileTheTitleIsFetchedEndsTheRun)
{
    m_site.on("/page", test::neverAnswer());
    m_parser.answer(goodAnswer());
    start();
    m_site.waitForRequests(1);
    stopAndExpectItAtOnce();

    EXPECT_EQ(m_events.codes(), QStringLiteral("1 15 4 9"));
}

TEST_F(FetchWorkerRun, aStopWhileAServerNeverAnswersEndsTheRun)
{
    m_site.on("/media", test::neverAnswer());
    m_parser.answer(goodAnswer());
    start();
    m_site.waitForRequests(2);
    stopAndExpectItAtOnce();

    EXPECT_EQ(m_events.codes(), QStringLiteral("1 15 4 13 3 9"));
}

TEST_F(FetchWorkerRun, aStopWhileAServerStallsInTheBodyEndsTheRun)
{
    m_site.on("/media", test::answerStalled("begin", 1'000));
    m_parser.answer(goodAnswer());
    start();
    test::waitUntil("the file", [this] { return m_events.has(TaskEventCode::FileCreated); });
    stopAndExpectItAtOnce();

    EXPECT_EQ(m_sandbox.read(QStringLiteral("Afine day.mp4")), QByteArray("begin"));
}

TEST_F(FetchWorkerRun, deleteOnStopTakesThePartlyWrittenFileAlong)
{
    m_site.on("/media", test::answerStalled("begin", 1'000));
    m_parser.answer(goodAnswer());
    m_worker->setDeleteOnStop(true);
    start();
    test::waitUntil("the file", [this] { return m_events.has(TaskEventCode::FileCreated); });
    stopAndExpectItAtOnce();

    EXPECT_FALSE(QFile::exists(m_sandbox.file(QStringLiteral("Afine day.mp4"))));
}

TEST_F(FetchWorkerRun, fiftyDownloadsAtOnceAllCompleteEachWithItsOwnContent)
{
    constexpr int kCount = 50;
    constexpr int kSize = 700'001;
    const auto nameOf = [](int number) { return QStringLiteral("clip %1").arg(number); };
    const auto bodyOf = [](int number) {
        QByteArray body(kSize, Qt::Uninitialized);
        for (int at = 0; at < kSize; ++at) {
            body[at] = static_cast<char>(at * (2 * number + 1) + at / 251);
        }
        return body;
    };
    std::vector<std::shared_ptr<FetchWorker>> workers;
    std::vector<std::unique_ptr<platform::WorkerThread>> threads;
    for (int number = 0; number < kCount; ++number) {
        const QByteArray path = "/clips/" + QByteArray::number(number);
        m_site.on(path, test::answer(bodyOf(number)));
        TaskInfo task = m_task;
        task.nModeLow = static_cast<int>(DownloadMethod::Direct);
        task.strDownloadUrl = m_site.address(path);
        task.strOutputName = nameOf(number);
        workers.push_back(std::make_shared<FetchWorker>());
        workers.back()->setRecord(task);
        workers.back()->setState(TaskState::Started);
        workers.back()->setOwner(m_events.port());
        workers.back()->setTaskId(static_cast<std::uint32_t>(number));
        threads.push_back(
            std::make_unique<platform::WorkerThread>([worker = workers.back()] { worker->run(); }));
    }
    for (const auto &thread : threads) {
        EXPECT_TRUE(thread->resume());
    }
    test::waitUntil("the end of fifty runs", [this] {
        return std::ranges::count(m_events.events(), TaskEventCode::Completed,
                                  &test::EventRecorder::Event::code) == kCount;
    });
    for (int number = 0; number < kCount; ++number) {
        EXPECT_EQ(workers[static_cast<std::size_t>(number)]->record().dwDownloadSize, kSize);
        EXPECT_TRUE(m_sandbox.read(nameOf(number) + QStringLiteral(".flv")) == bodyOf(number))
            << number;
    }
}

} // namespace
} // namespace tollivar::fetch
