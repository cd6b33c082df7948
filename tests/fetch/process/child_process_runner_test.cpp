#include "fetch/process/child_process_runner.h"
#include "tests/support/processes.h"
#include "tests/support/wait_until.h"

#include <csignal>

namespace {

using namespace Qt::StringLiterals;
using tollivar::fetch::ChildProcessRunner;
using tollivar::test::misbehavingChild;
using tollivar::test::openDescriptors;
using tollivar::test::waitUntil;

void waitForEnd(ChildProcessRunner &runner)
{
    waitUntil("the helper's end", [&runner] { return runner.hasEnded(); });
}

/// Everything the helper says until it has ended, as a caller's polling loop reads it.
QStringList chunksOf(ChildProcessRunner &runner)
{
    QStringList chunks;
    QString chunk;
    waitUntil("the helper's end and its last output", [&] {
        const bool hasEnded = runner.hasEnded();
        while (runner.read(chunk)) {
            chunks.append(chunk);
        }
        return hasEnded;
    });
    return chunks;
}

TEST(ChildProcessRunner, failsToStartAProgramThatDoesNotExistAndLeavesNothingOpen)
{
    const qsizetype before = openDescriptors();
    for (int i = 0; i < 20; ++i) {
        ChildProcessRunner runner;
        EXPECT_FALSE(runner.start(u"no-such-helper.exe -url \"x\""_s));
        EXPECT_EQ(openDescriptors(), before);
    }
}

TEST(ChildProcessRunner, readsNothingFromASilentHelperAndSeesItsEnd)
{
    ChildProcessRunner runner;
    ASSERT_TRUE(runner.start(misbehavingChild({u"silent"_s})));
    waitForEnd(runner);
    QString chunk = u"before"_s;
    EXPECT_FALSE(runner.read(chunk));
    EXPECT_EQ(chunk, u"before"_s);
    EXPECT_TRUE(runner.hasEnded());
}

TEST(ChildProcessRunner, deliversLongOutputInChunksOfAtMost2047Bytes)
{
    for (const int size : {2'046, 2'047, 2'048, 4'094, 4'095, 50'000}) {
        ChildProcessRunner runner;
        ASSERT_TRUE(runner.start(misbehavingChild({u"bytes"_s, QString::number(size)})));
        waitForEnd(runner);
        const QStringList chunks = chunksOf(runner);
        EXPECT_EQ(chunks.join(QString()), QString(size, u'x'));
        EXPECT_EQ(chunks.size(), (size + 2'046) / 2'047) << size;
        for (const QString &chunk : chunks) {
            EXPECT_LE(chunk.size(), 2'047);
        }
    }
}

TEST(ChildProcessRunner, joinsOutputAndErrors)
{
    ChildProcessRunner runner;
    ASSERT_TRUE(runner.start(misbehavingChild({u"both"_s})));
    EXPECT_EQ(chunksOf(runner).join(QString()), u"out\nerr\n"_s);
}

TEST(ChildProcessRunner, readsUtf8AndTakesOtherBytesAsLatin1)
{
    const std::vector<std::pair<QString, QString>> cases = {
        {u"c3a4e282acf09d849e"_s, u"ä€𝄞"_s}, {u"e4f6fc"_s, u"äöü"_s}, {u"41c341"_s, u"AÃA"_s}};
    for (const auto &[bytes, text] : cases) {
        ChildProcessRunner runner;
        ASSERT_TRUE(runner.start(misbehavingChild({u"write"_s, bytes})));
        EXPECT_EQ(chunksOf(runner).join(QString()), text);
    }
}

TEST(ChildProcessRunner, convertsACharacterThatTheLimitCutsInTwoHalves)
{
    ChildProcessRunner runner;
    const QString ascii = QString(u"78"_s).repeated(2'046);
    ASSERT_TRUE(runner.start(misbehavingChild({u"write"_s, ascii + u"c3a4"_s})));
    waitForEnd(runner);
    QString chunk;
    ASSERT_TRUE(runner.read(chunk));
    EXPECT_EQ(chunk, QString(2'046, u'x') + u"Ã"_s);
    ASSERT_TRUE(runner.read(chunk));
    EXPECT_EQ(chunk, u"¤"_s);
}

TEST(ChildProcessRunner, readsAllOfAHelperThatEndsQuickly)
{
    ChildProcessRunner runner;
    ASSERT_TRUE(runner.start(misbehavingChild({u"bytes"_s, u"10000"_s})));
    QString text = u"kept "_s;
    // The bytes go out in one write, so that the end cannot come between two of them.
    waitForEnd(runner);
    EXPECT_TRUE(runner.readAll(text));
    EXPECT_EQ(text, u"kept "_s + QString(10'000, u'x'));
}

TEST(ChildProcessRunner, neverWaitsForAHelperThatSaysNothing)
{
    ChildProcessRunner runner;
    ASSERT_TRUE(runner.start(misbehavingChild({u"hang"_s})));
    QString chunk;
    waitUntil("the helper's only word", [&] { return runner.read(chunk); });
    EXPECT_EQ(chunk, u"ready\n"_s);
    for (int i = 0; i < 1'000; ++i) {
        EXPECT_FALSE(runner.read(chunk));
        EXPECT_FALSE(runner.hasEnded());
    }
    runner.close();
}

TEST(ChildProcessRunner, readsWordsOfALineThatNeverEnds)
{
    ChildProcessRunner runner;
    ASSERT_TRUE(runner.start(misbehavingChild({u"chatter"_s})));
    QString text;
    QString chunk;
    waitUntil("a few words", [&] {
        text += runner.read(chunk) ? chunk : QString();
        return text.startsWith(u"chatter chatter chatter ");
    });
    EXPECT_FALSE(runner.hasEnded());
}

TEST(ChildProcessRunner, tellsTheExitCodeOnceTheHelperHasEnded)
{
    ChildProcessRunner runner;
    ASSERT_TRUE(runner.start(misbehavingChild({u"exit"_s, u"42"_s})));
    waitForEnd(runner);
    std::uint32_t code = 0;
    EXPECT_TRUE(runner.exitCode(code));
    EXPECT_EQ(code, 42U);
}

TEST(ChildProcessRunner, tellsACrash)
{
    ChildProcessRunner runner;
    ASSERT_TRUE(runner.start(misbehavingChild({u"crash"_s})));
    waitForEnd(runner);
    std::uint32_t code = 0;
    EXPECT_TRUE(runner.exitCode(code));
    EXPECT_EQ(code, 128U + SIGABRT);
}

TEST(ChildProcessRunner, hasNoExitCodeWhileTheHelperRuns)
{
    ChildProcessRunner runner;
    ASSERT_TRUE(runner.start(misbehavingChild({u"hang"_s})));
    std::uint32_t code = 7;
    EXPECT_FALSE(runner.exitCode(code));
    EXPECT_EQ(code, 7U);
}

TEST(ChildProcessRunner, killsWithExitCode0)
{
    for (const QString &what : {u"deaf"_s, u"endless"_s, u"grandchild"_s}) {
        ChildProcessRunner runner;
        ASSERT_TRUE(runner.start(misbehavingChild({what})));
        runner.kill();
        EXPECT_TRUE(runner.hasEnded());
        std::uint32_t code = 7;
        EXPECT_TRUE(runner.exitCode(code));
        EXPECT_EQ(code, 0U) << qPrintable(what);
    }
}

TEST(ChildProcessRunner, keepsTheExitCodeOfAHelperThatIsKilledAfterItsEnd)
{
    ChildProcessRunner runner;
    ASSERT_TRUE(runner.start(misbehavingChild({u"exit"_s, u"3"_s})));
    waitForEnd(runner);
    runner.kill();
    std::uint32_t code = 0;
    EXPECT_TRUE(runner.exitCode(code));
    EXPECT_EQ(code, 3U);
}

TEST(ChildProcessRunner, isAtRestBeforeTheStartAndAfterTheClose)
{
    ChildProcessRunner runner;
    const auto expectAtRest = [&runner] {
        QString chunk;
        std::uint32_t code = 7;
        EXPECT_FALSE(runner.read(chunk));
        EXPECT_TRUE(runner.hasEnded());
        EXPECT_FALSE(runner.exitCode(code));
        EXPECT_TRUE(runner.readAll(chunk));
        runner.kill();
        runner.close();
    };
    expectAtRest();
    ASSERT_TRUE(runner.start(misbehavingChild({u"hang"_s})));
    runner.close();
    expectAtRest();
}

TEST(ChildProcessRunner, runsOneHelperAfterTheOther)
{
    ChildProcessRunner runner;
    ASSERT_TRUE(runner.start(misbehavingChild({u"deaf"_s})));
    runner.kill();
    ASSERT_TRUE(runner.start(misbehavingChild({u"exit"_s, u"9"_s})));
    waitForEnd(runner);
    std::uint32_t code = 0;
    EXPECT_TRUE(runner.exitCode(code));
    EXPECT_EQ(code, 9U);
}

TEST(ChildProcessRunner, leavesNeitherHelpersNorDescriptorsBehind)
{
    // 300 helpers ended at any point of their start.
    const qsizetype before = openDescriptors();
    for (int i = 0; i < 300; ++i) {
        ChildProcessRunner runner;
        ASSERT_TRUE(runner.start(misbehavingChild({u"hang"_s})));
    }
    EXPECT_EQ(openDescriptors(), before);
}

} // namespace
