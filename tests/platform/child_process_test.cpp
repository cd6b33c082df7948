#include "platform/child_process.h"
#include "platform/command_line_text.h"
#include "tests/support/processes.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <QFile>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using tollivar::platform::ChildOptions;
using tollivar::platform::ChildOutput;
using tollivar::platform::ChildProcess;
using tollivar::platform::ErrorKind;
using tollivar::platform::joinCommandLine;
using tollivar::test::childStarter;
using tollivar::test::firstLineOf;
using tollivar::test::isRunning;
using tollivar::test::misbehavingChild;
using tollivar::test::openDescriptors;
using tollivar::test::outputOf;
using tollivar::test::Sandbox;
using tollivar::test::waitUntil;

std::unique_ptr<ChildProcess> started(const QStringList &arguments,
                                      const ChildOptions &options = {})
{
    auto child = ChildProcess::start(misbehavingChild(arguments), options);
    EXPECT_TRUE(child) << qPrintable(child.error().text);
    return child ? std::move(*child) : nullptr;
}

int exitCodeOf(ChildProcess &child)
{
    waitUntil("the child's end", [&child] { return child.hasEnded(); });
    return child.exitCode().value_or(-1000);
}

void expectGone(qint64 processId)
{
    waitUntil("the process to be gone", [processId] { return !isRunning(processId); });
}

TEST(ChildProcess, handsItsOutputAndItsExitStatusOver)
{
    const auto child = started({u"write"_s, u"68690a"_s});
    EXPECT_EQ(outputOf(*child), "hi\n");
    EXPECT_EQ(exitCodeOf(*child), 0);
}

TEST(ChildProcess, readsNothingFromASilentChildAndSeesItsEnd)
{
    const auto child = started({u"silent"_s});
    EXPECT_EQ(exitCodeOf(*child), 0);
    std::array<std::byte, 16> buffer{};
    EXPECT_EQ(child->read(buffer), 0U);
}

TEST(ChildProcess, joinsStandardOutputAndError)
{
    const auto child = started({u"both"_s});
    EXPECT_EQ(outputOf(*child), "out\nerr\n");
}

TEST(ChildProcess, discardsOutputWhenAsked)
{
    const auto child =
        started({u"bytes"_s, u"1000000"_s}, {.output = ChildOutput::Discard, .environment = {}});
    EXPECT_EQ(exitCodeOf(*child), 0);
    std::array<std::byte, 16> buffer{};
    EXPECT_EQ(child->read(buffer), 0U);
}

TEST(ChildProcess, keepsOutputThatWaitsAfterTheEnd)
{
    const auto child = started({u"bytes"_s, u"5000"_s});
    EXPECT_EQ(exitCodeOf(*child), 0);
    EXPECT_EQ(outputOf(*child).size(), 5000);
}

TEST(ChildProcess, hasNoExitStatusWhileItRuns)
{
    const auto child = started({u"hang"_s});
    EXPECT_EQ(firstLineOf(*child), "ready");
    EXPECT_FALSE(child->hasEnded());
    EXPECT_EQ(child->exitCode(), std::nullopt);
}

TEST(ChildProcess, tellsTheExitStatus)
{
    for (const int code : {0, 1, 2, 77, 255}) {
        EXPECT_EQ(exitCodeOf(*started({u"exit"_s, QString::number(code)})), code);
    }
}

TEST(ChildProcess, tellsTheSignalThatEndedIt)
{
    EXPECT_EQ(exitCodeOf(*started({u"crash"_s})), 128 + SIGABRT);
    EXPECT_EQ(exitCodeOf(*started({u"die"_s, QString::number(SIGSEGV)})), 128 + SIGSEGV);
    EXPECT_EQ(exitCodeOf(*started({u"die"_s, QString::number(SIGTERM)})), 128 + SIGTERM);
}

TEST(ChildProcess, handsEveryArgumentOverAsItIs)
{
    const QStringList arguments = {u"plain"_s,
                                   u"two words"_s,
                                   u""_s,
                                   u"quote\"inside"_s,
                                   u"back\\slash"_s,
                                   u"end\\"_s,
                                   u"$HOME"_s,
                                   u"`id`"_s,
                                   u"*"_s,
                                   u"; exit 3"_s,
                                   u"tab\tx"_s,
                                   u"line\nend"_s,
                                   u"%PATH%"_s,
                                   u"\\\""_s,
                                   u"ä€𝄞"_s,
                                   u"-x"_s,
                                   u"'single'"_s,
                                   u"a\"b c\"d"_s,
                                   u"\\\\host\\x"_s,
                                   u"|&<>"_s};
    const auto child = started(QStringList{u"args"_s} + arguments);
    QByteArray expected;
    for (const QString &argument : arguments) {
        const QByteArray bytes = argument.toUtf8();
        expected += QByteArray::number(bytes.size()) + ':' + bytes + '\n';
    }
    EXPECT_EQ(outputOf(*child), expected);
}

TEST(ChildProcess, givesAnEmptyStandardInput)
{
    EXPECT_EQ(outputOf(*started({u"input"_s})), "0\n");
}

TEST(ChildProcess, leavesNoDescriptorToTheChildButItsStreams)
{
    Sandbox sandbox;
    // Without the close-on-exec mark, as a careless library leaves them.
    const int careless =
        open(QFile::encodeName(sandbox.file(u"x"_s)).constData(), O_RDWR | O_CREAT, 0600);
    ASSERT_GE(careless, 3);
    EXPECT_EQ(outputOf(*started({u"descriptors"_s})), "0\n1\n2\n");
    close(careless);
}

TEST(ChildProcess, leadsASessionOfItsOwnWithoutATerminal)
{
    const auto child = started({u"ids"_s});
    const QByteArray id = QByteArray::number(child->processId());
    EXPECT_EQ(outputOf(*child), id + ' ' + id + ' ' + id + '\n');
    EXPECT_EQ(outputOf(*started({u"terminal"_s})), "no");
}

TEST(ChildProcess, replacesAndAddsEnvironmentVariables)
{
    qputenv("TOLLIVAR_TEST_KEPT", "kept");
    qputenv("TOLLIVAR_TEST_REPLACED", "old");
    const ChildOptions options{
        .output = ChildOutput::OnePipe,
        .environment = {u"TOLLIVAR_TEST_REPLACED=new=er"_s, u"TOLLIVAR_TEST_ADDED=added"_s}};
    EXPECT_EQ(outputOf(*started({u"variable"_s, u"TOLLIVAR_TEST_KEPT"_s}, options)), "kept");
    EXPECT_EQ(outputOf(*started({u"variable"_s, u"TOLLIVAR_TEST_REPLACED"_s}, options)), "new=er");
    EXPECT_EQ(outputOf(*started({u"variable"_s, u"TOLLIVAR_TEST_ADDED"_s}, options)), "added");
    EXPECT_EQ(outputOf(*started({u"variable"_s, u"TOLLIVAR_TEST_REPLACED"_s})), "old");
}

TEST(ChildProcess, findsAProgramBesideOursByItsBareNameWithTheForeignEnding)
{
    auto child = ChildProcess::start(u"misbehaving_child.exe exit 5"_s);
    ASSERT_TRUE(child);
    EXPECT_EQ(exitCodeOf(**child), 5);
    child = ChildProcess::start(u".\\misbehaving_child.exe exit 6"_s);
    ASSERT_TRUE(child);
    EXPECT_EQ(exitCodeOf(**child), 6);
}

TEST(ChildProcess, failsToStartWithoutLeavingDescriptorsOpen)
{
    Sandbox sandbox;
    const QString notAProgram = sandbox.write(u"text"_s, "neither a program nor a script");
    const QString badScript = sandbox.write(u"script"_s, "#!/no/such/interpreter\n");
    for (const QString &path : {notAProgram, badScript}) {
        ASSERT_EQ(chmod(QFile::encodeName(path).constData(), 0700), 0);
    }
    const QStringList lines = {QString(),
                               u"   "_s,
                               u"\"\""_s,
                               u"no-such-program-anywhere -x"_s,
                               u"/no/such/folder/program"_s,
                               joinCommandLine({sandbox.path()}),
                               joinCommandLine({sandbox.write(u"plain"_s, "#!/bin/sh\n")}),
                               joinCommandLine({notAProgram}),
                               joinCommandLine({badScript})};
    const qsizetype before = openDescriptors();
    for (const QString &line : lines) {
        const auto child = ChildProcess::start(line);
        ASSERT_FALSE(child) << qPrintable(line);
        EXPECT_EQ(child.error().kind, ErrorKind::AskUser) << qPrintable(line);
        EXPECT_FALSE(child.error().text.isEmpty());
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(ChildProcess, refusesACommandLineThatANulWouldCut)
{
    const QString cut = misbehavingChild({u"exit"_s, u"0"_s}) + QChar(QChar::Null) + u"x"_s;
    EXPECT_FALSE(ChildProcess::start(cut));
}

TEST(ChildProcess, refusesArgumentsLongerThanTheSystemTakes)
{
    const qsizetype before = openDescriptors();
    EXPECT_FALSE(ChildProcess::start(misbehavingChild({u"args"_s, QString(4'000'000, u'x')})));
    EXPECT_EQ(openDescriptors(), before);
}

TEST(ChildProcess, leavesNoDescriptorOpenAfterItsLife)
{
    const qsizetype before = openDescriptors();
    for (int i = 0; i < 50; ++i) {
        started({u"silent"_s});
        exitCodeOf(*started({u"exit"_s, u"1"_s}));
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(ChildProcess, readsAnEndlessOutputInBoundedPiecesAndEndsIt)
{
    const auto child = started({u"endless"_s});
    std::array<std::byte, 2047> buffer{};
    for (int i = 0; i < 100; ++i) {
        ASSERT_TRUE(child->waitForOutput(60s));
        const std::size_t count = child->read(buffer);
        ASSERT_GT(count, 0U);
        ASSERT_LE(count, buffer.size());
    }
    child->kill();
    EXPECT_EQ(child->exitCode(), 128 + SIGKILL);
}

TEST(ChildProcess, waitsForOutputOnlyAsLongAsTold)
{
    const auto child = started({u"hang"_s});
    EXPECT_EQ(firstLineOf(*child), "ready");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(child->waitForOutput(30ms));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 30ms);
    EXPECT_FALSE(child->waitForOutput(0ms));
}

TEST(ChildProcess, waitsThroughALimitThatTheSystemCannotCount)
{
    // Its low 32 bits are none.
    constexpr std::chrono::milliseconds kMonths{1LL << 32};
    const auto child = started({u"chatter"_s});
    std::array<std::byte, 2047> buffer{};
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(child->waitForOutput(kMonths));
        ASSERT_GT(child->read(buffer), 0U);
    }
}

TEST(ChildProcess, endsAChildThatIsDeafToSignals)
{
    const auto child = started({u"deaf"_s});
    EXPECT_EQ(firstLineOf(*child), "ready");
    child->kill();
    EXPECT_TRUE(child->hasEnded());
    EXPECT_FALSE(isRunning(child->processId()));
}

TEST(ChildProcess, endsTheGrandchildrenToo)
{
    const auto child = started({u"grandchild"_s});
    const qint64 grandchild = firstLineOf(*child).toLongLong();
    ASSERT_TRUE(isRunning(grandchild));
    child->kill();
    expectGone(grandchild);
}

TEST(ChildProcess, endsWhatAChildThatHasEndedLeftBehind)
{
    auto child = started({u"orphan"_s});
    const qint64 grandchild = firstLineOf(*child).toLongLong();
    EXPECT_EQ(exitCodeOf(*child), 0);
    EXPECT_TRUE(isRunning(grandchild));
    child->kill();
    EXPECT_EQ(child->exitCode(), 0);
    expectGone(grandchild);
}

TEST(ChildProcess, endsTheGroupWhenItIsDestroyed)
{
    auto child = started({u"grandchild"_s});
    const qint64 process = child->processId();
    const qint64 grandchild = firstLineOf(*child).toLongLong();
    child.reset();
    EXPECT_FALSE(isRunning(process));
    expectGone(grandchild);
}

TEST(ChildProcess, mayBeKilledTwice)
{
    const auto child = started({u"hang"_s});
    child->kill();
    child->kill();
    EXPECT_EQ(child->exitCode(), 128 + SIGKILL);
}

TEST(ChildProcess, doesNotOutliveAStarterThatIsKilled)
{
    for (int round = 0; round < 10; ++round) {
        auto starter = ChildProcess::start(childStarter(misbehavingChild({u"deaf"_s})));
        ASSERT_TRUE(starter);
        const qint64 child = firstLineOf(**starter).toLongLong();
        ASSERT_GT(child, 0);
        // The starter's child leads a group of its own: only the system can end it.
        ::kill(static_cast<pid_t>((*starter)->processId()), SIGKILL);
        expectGone(child);
    }
}

TEST(ChildProcess, keepsExitStatusesWhereOurStarterHadThemIgnored)
{
    const auto previous = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(exitCodeOf(*started({u"exit"_s, u"7"_s})), 7);
    std::signal(SIGCHLD, previous);
}

TEST(ChildProcess, startsWhenOurOwnStandardStreamsAreClosed)
{
    // In a process of its own, which closes its streams and starts a child that says something.
    const QString helper = misbehavingChild({u"write"_s, u"6f6b"_s});
    const pid_t process = fork();
    ASSERT_GE(process, 0);
    if (process == 0) {
        for (const int stream : {0, 1, 2}) {
            close(stream);
        }
        auto child = ChildProcess::start(helper);
        std::array<std::byte, 8> buffer{};
        const bool isGood = child && (*child)->waitForOutput(60s) && (*child)->read(buffer) == 2;
        _exit(isGood ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST(ChildProcess, isStartedAndEndedFromManyThreadsAtOnce)
{
    // 4 threads, 50 children each: catches a pipe end that leaks into another thread's child,
    // which would keep that pipe open.
    std::vector<std::thread> threads;
    std::atomic<int> good = 0;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&good] {
            for (int i = 0; i < 50; ++i) {
                auto child = ChildProcess::start(misbehavingChild({u"write"_s, u"6f6b"_s}));
                std::array<std::byte, 8> buffer{};
                const bool isGood = child && (*child)->waitForOutput(60s) &&
                                    (*child)->read(buffer) == 2 && (*child)->waitForOutput(60s) &&
                                    (*child)->read(buffer) == 0;
                good += isGood ? 1 : 0;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(good, 200);
}

} // namespace
