#include "tests/support/http_site.h"
#include "tests/support/program_run.h"
#include "tests/support/rtmp_server.h"
#include "tests/support/wait_until.h"

#include <QFile>

#include <gtest/gtest.h>

#include <csignal>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;
using test::ProgramRun;

/// The terminal's conversions, with the real converter.
class CliConvert : public ::testing::Test {
protected:
    ProgramRun run(const QStringList &arguments) const
    {
        return ProgramRun(m_sandbox, u"tollivar-cli"_s, arguments);
    }

    /// A file with sound; `more` is put before its name.
    QString make(const QString &name, const QString &source, const QStringList &more = {}) const
    {
        const QString path = m_sandbox.file(name);
        test::runToEnd(QStringList{u"ffmpeg"_s, u"-nostdin"_s, u"-v"_s, u"error"_s, u"-y"_s,
                                   u"-f"_s, u"lavfi"_s, u"-i"_s, source} +
                       more + QStringList{path});
        return path;
    }

    static QString codecOf(const QString &path)
    {
        return QString::fromUtf8(
                   test::runToEnd({u"ffprobe"_s, u"-v"_s, u"error"_s, u"-show_entries"_s,
                                   u"stream=codec_name"_s, u"-of"_s, u"csv=p=0"_s, path}))
            .trimmed();
    }

    test::Sandbox m_sandbox;
    test::HttpSite m_site;
};

TEST_F(CliConvert, aFileIsConvertedBesideItself)
{
    make(u"clip.mp4"_s, u"sine=duration=2"_s);
    ProgramRun program = run({u"convert"_s, u"clip.mp4"_s, u"--profile"_s, u"mp3"_s});
    EXPECT_EQ(program.finish(), 0) << program.errors().constData();
    EXPECT_EQ(program.output(), m_sandbox.file(u"clip.mp3"_s).toUtf8() + '\n');
    EXPECT_EQ(codecOf(m_sandbox.file(u"clip.mp3"_s)), u"mp3"_s);
    EXPECT_TRUE(QFile::exists(m_sandbox.file(u"clip.mp4"_s)));
}

TEST_F(CliConvert, whatCannotBeAskedIsStatusTwo)
{
    make(u"clip.mp4"_s, u"sine=duration=1"_s);
    for (const auto &[file, profile, reason] :
         {std::tuple(u"missing.mp4"_s, u"MP3"_s, "there is no file \"missing.mp4\""),
          std::tuple(u"clip.mp4"_s, u"VHS"_s, "no profile begins with \"VHS\""),
          std::tuple(u"clip.mp4"_s, u"iPod"_s, "\"iPod\" can mean: "),
          std::tuple(u"clip.mp4"_s, u"None"_s, "converts nothing")}) {
        ProgramRun program = run({u"convert"_s, file, u"--profile"_s, profile});
        EXPECT_EQ(program.finish(), 2);
        EXPECT_TRUE(program.errors().contains(reason)) << program.errors().constData();
    }
}

TEST_F(CliConvert, aFileThatIsNoMediaIsStatusOneWithTheConvertersWords)
{
    m_sandbox.write(u"clip.mp4"_s, "no media");
    ProgramRun program = run({u"convert"_s, u"clip.mp4"_s, u"--profile"_s, u"MP3"_s, u"--json"_s});
    EXPECT_EQ(program.finish(), 1);
    const auto events = program.events();
    ASSERT_FALSE(events.isEmpty());
    EXPECT_EQ(events.last()[u"event"].toString(), u"failed"_s);
    EXPECT_FALSE(events.last()[u"reason"].toString().isEmpty());
}

TEST_F(CliConvert, anInterruptEndsItWithoutAHalfFile)
{
    make(u"clip.avi"_s, u"testsrc=size=640x360:rate=50:duration=120"_s, {u"-c:v"_s, u"mpeg4"_s});
    ProgramRun program = run({u"convert"_s, u"clip.avi"_s, u"--profile"_s, u"WMV"_s, u"--json"_s});
    test::waitUntil("the half file",
                    [&] { return QFile::exists(m_sandbox.file(u".converting-clip.wmv"_s)); });
    program.signal(SIGINT);
    EXPECT_EQ(program.finish(), 3);
    EXPECT_FALSE(QFile::exists(m_sandbox.file(u".converting-clip.wmv"_s)));
    EXPECT_FALSE(QFile::exists(m_sandbox.file(u"clip.wmv"_s)));
}

TEST_F(CliConvert, aKilledProgramLeavesNeitherConverterNorHalfFile)
{
    make(u"clip.avi"_s, u"testsrc=size=640x360:rate=50:duration=120"_s, {u"-c:v"_s, u"mpeg4"_s});
    ProgramRun program = run({u"convert"_s, u"clip.avi"_s, u"--profile"_s, u"WMV"_s});
    const QString half = m_sandbox.file(u".converting-clip.wmv"_s);
    test::waitUntil("the half file", [&] { return QFile::exists(half); });
    program.signal(SIGKILL);
    EXPECT_EQ(program.finish(), -1);
    test::waitUntil("the converter's end", [&] { return !QFile::exists(half); });
    EXPECT_FALSE(QFile::exists(m_sandbox.file(u"clip.wmv"_s)));
}

TEST_F(CliConvert, aDownloadWithAProfileEndsAsTheConvertedFile)
{
    QFile media(make(u"tone.mp4"_s, u"sine=duration=2"_s));
    ASSERT_TRUE(media.open(QIODevice::ReadOnly));
    m_site.on("/a/tone.mp4", test::answer(media.readAll()));
    ProgramRun program =
        run({u"download"_s, u"--mode"_s, u"direct"_s, u"--folder"_s, u"out"_s, u"--profile"_s,
             u"MP3"_s, u"--json"_s, m_site.address("/a/tone.mp4")});
    EXPECT_EQ(program.finish(), 0) << program.errors().constData();
    const auto events = program.events();
    ASSERT_GE(events.size(), 4);
    EXPECT_EQ(events[events.size() - 2][u"event"].toString(), u"converting"_s);
    EXPECT_EQ(events.last()[u"event"].toString(), u"completed"_s);
    EXPECT_EQ(events.last()[u"path"].toString(), m_sandbox.file(u"out/tone.mp3"_s));
    EXPECT_EQ(codecOf(m_sandbox.file(u"out/tone.mp3"_s)), u"mp3"_s);
    EXPECT_TRUE(QFile::exists(m_sandbox.file(u"out/tone.mp4"_s)));
}

TEST_F(CliConvert, aDownloadThatCannotBeConvertedStaysAndIsStatusOne)
{
    m_site.on("/a/tone.mp4", test::answer("no media"));
    ProgramRun program = run({u"download"_s, u"--mode"_s, u"direct"_s, u"--folder"_s, u"out"_s,
                              u"--profile"_s, u"MP3"_s, m_site.address("/a/tone.mp4")});
    EXPECT_EQ(program.finish(), 1);
    EXPECT_EQ(m_sandbox.read(u"out/tone.mp4"_s), QByteArray("no media"));
}

TEST_F(CliConvert, anUnknownProfileMakesNoTask)
{
    ProgramRun program =
        run({u"download"_s, u"--profile"_s, u"VHS"_s, m_site.address("/a/tone.mp4")});
    EXPECT_EQ(program.finish(), 2);
    ProgramRun list = run({u"list"_s});
    EXPECT_EQ(list.finish(), 0);
    EXPECT_EQ(list.output(), QByteArray());
}

} // namespace
} // namespace tollivar::app
