#include "platform/guarded_child.h"
#include "tests/support/processes.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace tollivar::platform {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using test::isRunning;
using test::waitUntil;
using Clock = std::chrono::steady_clock;

class GuardedChildTest : public ::testing::Test {
protected:
    GuardedChildTest() : m_oldPath(qgetenv("PATH"))
    {
        // Where the guardian lies.
        qputenv("PATH", QByteArray(TOLLIVAR_PROGRAM_DIRECTORY) + ':' + m_oldPath);
    }
    ~GuardedChildTest() override { qputenv("PATH", m_oldPath); }

    [[nodiscard]] GuardedOptions shell(const QString &script) const
    {
        return {.program = QStringLiteral("/bin/sh"),
                .arguments = {QStringLiteral("-c"), script},
                .environment = {QStringLiteral("FOLDER=") + folder()},
                .folder = folder()};
    }
    [[nodiscard]] static std::unique_ptr<GuardedChild> start(const GuardedOptions &options)
    {
        auto child = GuardedChild::start(options);
        EXPECT_TRUE(child);
        return child ? std::move(*child) : nullptr;
    }
    /// What the program says up to the end of a line.
    [[nodiscard]] static QByteArray line(GuardedChild &child)
    {
        QByteArray text;
        const auto limit = Clock::now() + seconds(30);
        while (!text.contains('\n') && !child.isGone() && Clock::now() < limit) {
            text += child.read(seconds(1));
        }
        return text.trimmed();
    }

    [[nodiscard]] QString folder() const { return m_sandbox.file(QStringLiteral("guarded")); }
    [[nodiscard]] bool isFolderThere() const { return QFile::exists(folder()); }

    test::Sandbox m_sandbox;

private:
    QByteArray m_oldPath;
};

TEST_F(GuardedChildTest, talksOverDescriptorsThreeAndFour)
{
    const auto child =
        start(shell(QStringLiteral("read word <&3; echo \"got $word\" >&4; cat <&3")));
    ASSERT_TRUE(child->write("hello\n", seconds(5)));
    EXPECT_EQ(line(*child), "got hello");
}

TEST_F(GuardedChildTest, theProgramHasAFolderForUsAlone)
{
    const auto child = start(shell(QStringLiteral("ls -ld \"$FOLDER\" >&4; cat <&3")));
    EXPECT_TRUE(line(*child).startsWith("drwx------"));
}

TEST_F(GuardedChildTest, theEndOfTheProgramIsToldAndItsFolderRemoved)
{
    auto child = start(shell(QStringLiteral("touch \"$FOLDER/file\"; mkdir \"$FOLDER/sub\"")));
    EXPECT_EQ(child->read(seconds(30)), "");
    EXPECT_TRUE(child->isGone());
    child.reset();
    EXPECT_FALSE(isFolderThere());
}

TEST_F(GuardedChildTest, destructionEndsTheProgramAndAllThatItStarted)
{
    auto child = start(shell(QStringLiteral("trap '' TERM HUP INT\n"
                                            "setsid sleep 1000 & echo $! $$ >&4\n"
                                            "while :; do sleep 1; done")));
    const auto ids = line(*child).split(' ');
    ASSERT_EQ(ids.size(), 2);
    child.reset();
    EXPECT_FALSE(isRunning(ids[0].toLongLong()));
    EXPECT_FALSE(isRunning(ids[1].toLongLong()));
    EXPECT_FALSE(isFolderThere());
}

TEST_F(GuardedChildTest, whatTheProgramStartedEndsWithIt)
{
    const auto child =
        start(shell(QStringLiteral("setsid sleep 1000 <&- 3<&- 4>&- & echo $! >&4")));
    const qint64 id = line(*child).toLongLong();
    ASSERT_GT(id, 0);
    waitUntil("the child of the program to end", [id] { return !isRunning(id); });
}

TEST_F(GuardedChildTest, aProgramThatCannotBeRunIsGoneAtOnce)
{
    auto child = start({.program = m_sandbox.file(QStringLiteral("missing")),
                        .arguments = {},
                        .environment = {},
                        .folder = folder()});
    EXPECT_EQ(child->read(seconds(30)), "");
    EXPECT_TRUE(child->isGone());
    child.reset();
    EXPECT_FALSE(isFolderThere());
}

TEST_F(GuardedChildTest, aFolderThatIsThereAlreadyIsNeverTouched)
{
    static_cast<void>(m_sandbox.write(QStringLiteral("guarded/precious"), "content"));
    auto child = start(shell(QStringLiteral("echo runs >&4")));
    EXPECT_EQ(child->read(seconds(30)), "");
    EXPECT_TRUE(child->isGone());
    child.reset();
    EXPECT_EQ(m_sandbox.read(QStringLiteral("guarded/precious")), "content");
}

TEST_F(GuardedChildTest, aMissingGuardianIsAFailure)
{
    qputenv("PATH", "/usr/bin:/bin");
    const auto child = GuardedChild::start(shell(QStringLiteral("echo runs >&4")));
    ASSERT_FALSE(child);
    EXPECT_EQ(child.error().kind, ErrorKind::AskUser);
    EXPECT_FALSE(isFolderThere());
}

TEST_F(GuardedChildTest, aProgramThatDoesNotReadIsWrittenToNoLongerThanTheLimit)
{
    const auto child = start(shell(QStringLiteral("exec sleep 1000")));
    const auto begin = Clock::now();
    EXPECT_FALSE(child->write(QByteArray(10'000'000, 'x'), milliseconds(200)));
    EXPECT_GE(Clock::now() - begin, milliseconds(200));
    EXPECT_LE(Clock::now() - begin, seconds(5));
    EXPECT_FALSE(child->isGone());
}

TEST_F(GuardedChildTest, writingToAProgramThatIsGoneFailsAndHarmsNobody)
{
    const auto child = start(shell(QStringLiteral("exit 0")));
    EXPECT_EQ(child->read(seconds(30)), "");
    EXPECT_FALSE(child->write(QByteArray(10'000'000, 'x'), seconds(5)));
    EXPECT_TRUE(child->isGone());
}

TEST_F(GuardedChildTest, wakeEndsAReadAtOnceAndEveryLaterOne)
{
    const auto child = start(shell(QStringLiteral("exec sleep 1000")));
    const auto begin = Clock::now();
    std::thread waker([&child] { child->wake(); });
    EXPECT_EQ(child->read(seconds(60)), "");
    EXPECT_EQ(child->read(seconds(60)), "");
    EXPECT_FALSE(child->write(QByteArray(10'000'000, 'x'), seconds(60)));
    waker.join();
    EXPECT_LE(Clock::now() - begin, seconds(30));
    EXPECT_FALSE(child->isGone());
}

TEST_F(GuardedChildTest, descriptorsOfOursStayOurs)
{
    const qsizetype before = test::openDescriptors();
    {
        const auto child =
            start(shell(QStringLiteral("ls /proc/self/fd | tr '\\n' ' ' >&4; echo >&4")));
        // One more than the program has: the listing opens the folder that it lists.
        const auto descriptors = line(*child).split(' ');
        for (const QByteArray &descriptor : descriptors) {
            EXPECT_LE(descriptor.toInt(), 5) << descriptor.constData();
        }
    }
    EXPECT_EQ(test::openDescriptors(), before);
}

TEST_F(GuardedChildTest, aKilledOwnerLeavesNothing)
{
    // The moment of the kill moves through the start, where a folder or a process without a
    // guardian would be left behind.
    constexpr int kRepeats = 25;
    const QString started = m_sandbox.file(QStringLiteral("id"));
    const GuardedOptions options = shell(
        QStringLiteral("setsid sleep 1000 & echo $$ $! > '%1.new'; mv '%1.new' '%1'; sleep 1000")
            .arg(started));
    for (int i = 0; i < kRepeats; ++i) {
        QFile::remove(started);
        // Its end is held by the owner, and by the guardian until that has become a program.
        std::array<int, 2> ends = {-1, -1};
        ASSERT_EQ(pipe(ends.data()), 0);
        const pid_t owner = fork();
        if (owner == 0) {
            const auto child = GuardedChild::start(options);
            pause();
            _exit(0);
        }
        if (i == 0) {
            waitUntil("the program to start", [&] { return QFile::exists(started); });
        } else {
            std::this_thread::sleep_for(std::chrono::microseconds(400) * i);
        }
        kill(owner, SIGKILL);
        ASSERT_EQ(waitpid(owner, nullptr, 0), owner);
        close(ends[1]);
        char none = 0;
        EXPECT_EQ(read(ends[0], &none, 1), 0);
        close(ends[0]);
        waitUntil("everything to end",
                  [&] { return test::processesNaming(folder().toUtf8()).isEmpty(); });
        EXPECT_FALSE(isFolderThere());
        for (const QByteArray &id : m_sandbox.read(QStringLiteral("id")).simplified().split(' ')) {
            EXPECT_FALSE(isRunning(id.toLongLong())) << i;
        }
    }
}

TEST_F(GuardedChildTest, aKilledGuardianTakesTheProgramAlong)
{
    auto child = start(shell(QStringLiteral("echo $PPID $$ >&4; exec sleep 1000")));
    const auto ids = line(*child).split(' ');
    ASSERT_EQ(ids.size(), 2);
    kill(ids[0].toInt(), SIGKILL);
    const qint64 program = ids[1].toLongLong();
    waitUntil("the program to end", [program] { return !isRunning(program); });
    child.reset();
    EXPECT_FALSE(isFolderThere());
}

TEST_F(GuardedChildTest, politeSignalsDoNotEndTheGuardian)
{
    const auto child =
        start(shell(QStringLiteral("echo $PPID >&4; read word <&3; echo $word >&4")));
    const int guardian = line(*child).toInt();
    ASSERT_GT(guardian, 0);
    for (const int polite : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) {
        kill(guardian, polite);
    }
    ASSERT_TRUE(child->write("still\n", seconds(5)));
    EXPECT_EQ(line(*child), "still");
}

TEST_F(GuardedChildTest, politeSignalsStillEndTheProgram)
{
    const auto child = start(shell(QStringLiteral("kill -TERM $$; echo survived >&4")));
    EXPECT_EQ(line(*child), QByteArray());
}

} // namespace
} // namespace tollivar::platform
