#include "app/command_line.h"
#include "app/second_start.h"
#include "platform/child_process.h"
#include "platform/command_line_text.h"
#include "platform/local_messages.h"
#include "tests/support/processes.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <QFile>
#include <QSet>

#include <csignal>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace Qt::StringLiterals;
using tollivar::app::addressOf;
using tollivar::app::checkSingleInstance;
using tollivar::app::commandLineMessage;
using tollivar::app::readCommandLineMessage;
using tollivar::app::StartOutcome;
using tollivar::platform::ChildProcess;
using tollivar::platform::CopyDataId;
using tollivar::platform::InstancePlace;
using tollivar::platform::joinCommandLine;
using tollivar::platform::LocalMessageServer;
using tollivar::test::LineReader;
using tollivar::test::outputOf;
using tollivar::test::Sandbox;
using tollivar::test::waitUntil;

using Child = std::unique_ptr<ChildProcess>;

/// One person's log-in, with real processes that start in it.
class SecondStart : public testing::Test {
protected:
    [[nodiscard]] Child start(const QStringList &arguments, const QString &extra = u"X=1"_s) const
    {
        auto child = ChildProcess::start(
            joinCommandLine(QStringList{u"starting_program"_s} + arguments),
            {.output = tollivar::platform::ChildOutput::OnePipe,
             .environment = {u"XDG_RUNTIME_DIR="_s + m_runtime,
                             u"TOLLIVAR_TEST_DATA="_s + m_sandbox.file(u"data"_s), extra}});
        EXPECT_TRUE(child);
        return child ? std::move(*child) : nullptr;
    }

    [[nodiscard]] InstancePlace place() const
    {
        const QString base = m_sandbox.file(u"place"_s);
        return {.lock = base + u"/lock"_s, .socket = base + u".window/socket"_s};
    }

    Sandbox m_sandbox;
    QString m_runtime = m_sandbox.path();
};

TEST_F(SecondStart, handsItsAddressToTheFirstAndEnds)
{
    const Child first = start({});
    LineReader lines(*first);
    ASSERT_EQ(lines.next(), "first");
    EXPECT_EQ(outputOf(*start({u"-url"_s, u"http://host/a?b=\"c\" d"_s})), "end\n");
    EXPECT_EQ(lines.next(), "http://host/a?b=\"c\" d");
}

TEST_F(SecondStart, bringsTheFirstToTheFrontWhenItHasNoPair)
{
    const Child first = start({});
    LineReader lines(*first);
    ASSERT_EQ(lines.next(), "first");
    EXPECT_EQ(outputOf(*start({})), "end\n");
    EXPECT_EQ(lines.next(), "front");
    EXPECT_EQ(outputOf(*start({u"-url"_s})), "end\n");
    EXPECT_EQ(lines.next(), "front");
}

TEST_F(SecondStart, readsArgumentsInPairs)
{
    const Child first = start({});
    LineReader lines(*first);
    ASSERT_EQ(lines.next(), "first");
    EXPECT_EQ(outputOf(*start({u"a"_s, u"b"_s, u"-url"_s, u"X"_s})), "end\n");
    EXPECT_EQ(lines.next(), "X");
    EXPECT_EQ(outputOf(*start({u"a"_s, u"-url"_s, u"X"_s})), "end\n");
    EXPECT_EQ(lines.next(), "nothing");
    EXPECT_EQ(outputOf(*start({u"-URL"_s, u"one"_s, u"-url"_s, u"two"_s})), "end\n");
    EXPECT_EQ(lines.next(), "one");
}

TEST_F(SecondStart, worksWithoutARunTimeFolderBeforeTheDataDirectoryIsMade)
{
    m_runtime.clear();
    const Child first = start({});
    LineReader lines(*first);
    ASSERT_EQ(lines.next(), "first");
    EXPECT_EQ(outputOf(*start({u"-url"_s, u"X"_s})), "end\n");
    EXPECT_EQ(lines.next(), "X");
}

TEST_F(SecondStart, worksInAFolderWhosePathIsTooLongForASocket)
{
    m_runtime = m_sandbox.file(QString(200, u'l'));
    ASSERT_EQ(mkdir(QFile::encodeName(m_runtime).constData(), 0700), 0);
    const Child first = start({});
    LineReader lines(*first);
    ASSERT_EQ(lines.next(), "first");
    EXPECT_EQ(outputOf(*start({u"-url"_s, u"X"_s})), "end\n");
    EXPECT_EQ(lines.next(), "X");
}

TEST_F(SecondStart, endsWithoutAWordWhenTheFirstDoesNotListenYet)
{
    const Child first = start({}, u"TOLLIVAR_TEST_DEAF=1"_s);
    LineReader lines(*first);
    ASSERT_EQ(lines.next(), "first");
    EXPECT_EQ(outputOf(*start({u"-url"_s, u"X"_s})), "end\n");
}

TEST_F(SecondStart, endsAlsoWhenTheFirstHangs)
{
    const Child first = start({}, u"TOLLIVAR_TEST_HUNG=1"_s);
    LineReader lines(*first);
    ASSERT_EQ(lines.next(), "first");
    EXPECT_TRUE(outputOf(*start({u"-url"_s, u"X"_s})).endsWith("\nend\n"));
}

TEST_F(SecondStart, becomesTheFirstAfterTheFirstWasKilled)
{
    // 20 rounds: catches a lock or a socket that outlives its process.
    for (int round = 0; round < 20; ++round) {
        const Child first = start({});
        LineReader lines(*first);
        ASSERT_EQ(lines.next(), "first");
        EXPECT_EQ(outputOf(*start({u"-url"_s, u"X"_s})), "end\n");
        EXPECT_EQ(lines.next(), "X");
        ::kill(static_cast<pid_t>(first->processId()), SIGKILL);
        waitUntil("the first's death", [&first] { return first->hasEnded(); });
    }
}

TEST_F(SecondStart, leavesOneFirstOfTwelveThatStartAtOnce)
{
    // 10 rounds: catches two firsts, which a check by connecting lets through in 1 of 12 rounds.
    for (int round = 0; round < 10; ++round) {
        std::vector<Child> starts;
        for (int i = 0; i < 12; ++i) {
            starts.push_back(start({u"-url"_s, QString::number(i)}));
        }
        Child first;
        for (Child &child : starts) {
            LineReader lines(*child);
            if (lines.next() == "first") {
                EXPECT_EQ(first, nullptr);
                first = std::move(child);
            }
        }
        ASSERT_NE(first, nullptr);
        // Whatever was handed over arrived once; and who comes now is heard.
        EXPECT_EQ(outputOf(*start({u"-url"_s, u"last"_s})), "end\n");
        QSet<QByteArray> heard;
        LineReader lines(*first);
        for (QByteArray line = lines.next(); line != "last"; line = lines.next()) {
            EXPECT_FALSE(heard.contains(line)) << line.constData();
            EXPECT_LT(line.toInt(), 12);
            heard.insert(line);
            ASSERT_LE(heard.size(), 12);
        }
    }
}

TEST_F(SecondStart, goesOnWithoutAClaimWhereNoLockCanBe)
{
    m_sandbox.write(u"place"_s, "a file where the folder should be");
    const auto check = checkSingleInstance(place(), {u"Tollivar"_s});
    EXPECT_EQ(check.outcome, StartOutcome::GoOn);
    EXPECT_EQ(check.claim, nullptr);
}

TEST_F(SecondStart, holdsTheClaimUntilItIsLetGo)
{
    auto check = checkSingleInstance(place(), {u"Tollivar"_s});
    EXPECT_EQ(check.outcome, StartOutcome::GoOn);
    EXPECT_EQ(checkSingleInstance(place(), {u"Tollivar"_s}).outcome, StartOutcome::End);
    check.claim.reset();
    EXPECT_EQ(checkSingleInstance(place(), {u"Tollivar"_s}).outcome, StartOutcome::GoOn);
}

TEST(CommandLineMessage, isTheTextWithItsEndMark)
{
    EXPECT_EQ(commandLineMessage({u"T"_s, u"x"_s}),
              QByteArray("\"\0T\0\"\0 \0\"\0x\0\"\0\0\0", 16));
}

TEST(CommandLineMessage, comesBackAsItsArguments)
{
    const QStringList arguments = {u"/usr/bin/Tollivar"_s, u"-url"_s, u"http://h/ä \"q\"\\"_s,
                                   QString(), u"a b"_s};
    EXPECT_EQ(readCommandLineMessage(commandLineMessage(arguments)), arguments);
}

TEST(CommandLineMessage, keepsItsArgumentsWhateverTheProgramIsCalled)
{
    const auto read = readCommandLineMessage(
        commandLineMessage({u"/tmp/\" -url http://elsewhere \"/T"_s, u"-url"_s, u"X"_s}));
    ASSERT_TRUE(read);
    EXPECT_EQ(addressOf(*read), u"X"_s);
}

TEST(CommandLineMessage, refusesWhatIsNoSuchMessage)
{
    EXPECT_EQ(readCommandLineMessage(QByteArray()), std::nullopt);
    EXPECT_EQ(readCommandLineMessage(QByteArray("T", 1)), std::nullopt);
    EXPECT_EQ(readCommandLineMessage(QByteArray("T\0", 2)), std::nullopt);
    EXPECT_EQ(readCommandLineMessage(QByteArray("T\0\0", 3)), std::nullopt);
    EXPECT_EQ(readCommandLineMessage(QByteArray("\0\0", 2)), QStringList());
}

TEST(CommandLineMessage, survivesEveryCutAndEveryFlippedByte)
{
    const QByteArray good = commandLineMessage({u"T"_s, u"-url"_s, u"http://h/\"x\"\\"_s});
    for (qsizetype i = 0; i < good.size(); ++i) {
        static_cast<void>(readCommandLineMessage(good.left(i)));
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray flipped = good;
            flipped[i] = static_cast<char>(flipped[i] ^ (1 << bit));
            if (const auto read = readCommandLineMessage(flipped)) {
                EXPECT_LE(read->size(), good.size());
            }
        }
    }
}

} // namespace
