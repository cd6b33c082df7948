#include "tests/support/desktop_session.h"
#include "tests/support/program_run.h"
#include "tests/support/rtmp_server.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <QDir>

#include <gtest/gtest.h>

namespace tollivar::player {
namespace {

using namespace Qt::StringLiterals;

TEST(ClipPlayerUsage, badUsageIsToldWithStatusTwo)
{
    const test::Sandbox sandbox;
    for (const QStringList &arguments :
         {QStringList{u"-file"_s}, QStringList{u"a.mp4"_s}, QStringList{u"--script=x"_s}}) {
        test::ProgramRun program(sandbox, u"ClipPlayer"_s, arguments);
        EXPECT_EQ(program.finish(), 2);
        EXPECT_FALSE(program.errors().isEmpty());
        EXPECT_TRUE(program.output().isEmpty());
    }
}

/// The built player on a desktop, used by its window.
class ClipPlayerProgram : public ::testing::Test {
protected:
    QString makeClip(const QString &name) const
    {
        const QString path = m_sandbox.file(name);
        test::runToEnd({u"ffmpeg"_s, u"-nostdin"_s, u"-v"_s, u"error"_s, u"-f"_s, u"lavfi"_s,
                        u"-i"_s, u"testsrc2=size=320x240:rate=25:duration=20"_s,
                        u"file:"_s + path});
        return path;
    }

    test::Sandbox m_sandbox;
    test::DesktopSession m_desktop{m_sandbox};
};

TEST_F(ClipPlayerProgram, playsTheFileThatItIsStartedWithUntilItsWindowIsClosed)
{
    static_cast<void>(makeClip(u"-v harbour.mp4"_s));
    // A relative name, from the caller's folder.
    test::ProgramRun player(m_sandbox, u"ClipPlayer"_s, {u"-file"_s, u"-v harbour.mp4"_s});
    // The title is the file's name once it plays.
    const QString window = m_desktop.waitForWindow(u"v harbour"_s);
    m_desktop.close(window);
    EXPECT_EQ(player.finish(), 0);
    EXPECT_TRUE(player.output().isEmpty());
}

TEST_F(ClipPlayerProgram, controlQEndsItInFullScreenToo)
{
    test::ProgramRun player(m_sandbox, u"ClipPlayer"_s, {u"-file"_s, makeClip(u"harbour.mp4"_s)});
    const QString window = m_desktop.waitForWindow(u"harbour"_s);
    m_desktop.press(window, u"f"_s);
    test::waitUntil("it fills the screen", [&] {
        return m_desktop.ask({u"getwindowgeometry"_s, window}).contains("1280x1024");
    });
    m_desktop.press(window, u"ctrl+q"_s);
    EXPECT_EQ(player.finish(), 0);
}

TEST_F(ClipPlayerProgram, aFileThatIsNotThereOpensTheWindowAllTheSame)
{
    test::ProgramRun player(m_sandbox, u"ClipPlayer"_s, {u"-file"_s, u"gone.mp4"_s});
    m_desktop.press(m_desktop.waitForWindow(u"ClipPlayer"_s), u"ctrl+q"_s);
    EXPECT_EQ(player.finish(), 0);
}

TEST_F(ClipPlayerProgram, itLeavesNoFileBehind)
{
    test::ProgramRun player(m_sandbox, u"ClipPlayer"_s, {u"-file"_s, makeClip(u"harbour.mp4"_s)});
    m_desktop.press(m_desktop.waitForWindow(u"harbour"_s), u"ctrl+q"_s);
    EXPECT_EQ(player.finish(), 0);
    for (const QString &folder : {u"data"_s, u"state"_s, u"run"_s, u"documents"_s}) {
        EXPECT_TRUE(QDir(m_sandbox.file(folder)).isEmpty()) << folder.toStdString();
    }
}

} // namespace
} // namespace tollivar::player
