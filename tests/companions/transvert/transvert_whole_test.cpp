#include "tests/support/program_run.h"
#include "tests/support/rtmp_server.h"
#include "tests/support/sandbox.h"
#include "tests/support/wait_until.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <csignal>

namespace tollivar::transvert {
namespace {

using namespace Qt::StringLiterals;

/// The built converter on real media.
class TransVert : public ::testing::Test {
protected:
    QString make(const QString &name, const QStringList &arguments) const
    {
        const QString path = m_sandbox.file(name);
        test::runToEnd(QStringList{u"ffmpeg"_s, u"-nostdin"_s, u"-v"_s, u"error"_s, u"-y"_s} +
                       arguments + QStringList{u"file:"_s + path});
        return path;
    }

    int convert(const QString &input, const QString &output, const QStringList &options = {})
    {
        test::ProgramRun program(m_sandbox, u"Transcoder/TransVert"_s,
                                 QStringList{u"transvert.exe"_s, u"-i"_s, input} + options +
                                     QStringList{u"-y"_s, output});
        const int status = program.finish();
        m_output = program.output();
        return status;
    }

    static QByteArray probe(const QString &path)
    {
        return test::runToEnd({u"ffprobe"_s, u"-v"_s, u"error"_s, u"-show_entries"_s,
                               u"stream=codec_name,width,height,channels"_s, u"-of"_s,
                               u"default=noprint_wrappers=1"_s, u"file:"_s + path});
    }

    test::Sandbox m_sandbox;
    QByteArray m_output;
};

TEST_F(TransVert, soundOfSixChannelsBecomesStereoWhereTheFormatHasNoMore)
{
    const QString input =
        make(u"six.mkv"_s,
             {u"-f"_s, u"lavfi"_s, u"-i"_s,
              u"anullsrc=channel_layout=5.1:sample_rate=48000:duration=1"_s, u"-c:a"_s, u"ac3"_s});
    for (const QString &type : {u"mp3"_s, u"wmv"_s, u"flv"_s}) {
        const QString output = m_sandbox.file(u"out."_s + type);
        EXPECT_EQ(convert(input, output), 0) << m_output.constData();
        EXPECT_TRUE(probe(output).contains("channels=2")) << probe(output).constData();
    }
}

TEST_F(TransVert, aStillBecomesAFilmOfOnePicture)
{
    const QString input =
        make(u"still.png"_s,
             {u"-f"_s, u"lavfi"_s, u"-i"_s, u"color=red:size=101x51"_s, u"-frames:v"_s, u"1"_s});
    const QString output = m_sandbox.file(u"still.mp4"_s);
    EXPECT_EQ(convert(input, output), 0) << m_output.constData();
    const QByteArray found = probe(output);
    EXPECT_TRUE(found.contains("width=100")) << found.constData();
    EXPECT_TRUE(found.contains("height=50")) << found.constData();
}

TEST_F(TransVert, namesOfEveryKindAreFilesAndNothingElse)
{
    const QString tone = make(u"tone.wav"_s, {u"-f"_s, u"lavfi"_s, u"-i"_s, u"sine=duration=1"_s});
    for (const QString &name :
         {u"-i tone"_s, u"a \"quoted\" name"_s, u"100%d"_s, u"Видео 動画"_s, u"pipe:0"_s,
          u"concat:a|b"_s, u"http:"_s, u"a'b;c$d"_s, u"back\\slash"_s, u"new\nline"_s}) {
        const QString input = m_sandbox.file(name + u".wav"_s);
        ASSERT_TRUE(QFile::copy(tone, input)) << name.toStdString();
        const QString output = m_sandbox.file(name + u".mp3"_s);
        EXPECT_EQ(convert(input, output), 0) << name.toStdString() << m_output.constData();
        EXPECT_TRUE(QFile::exists(output)) << name.toStdString();
    }
}

TEST_F(TransVert, aListOfOtherFilesIsNotFollowed)
{
    make(u"secret.wav"_s, {u"-f"_s, u"lavfi"_s, u"-i"_s, u"sine=duration=1"_s});
    m_sandbox.write(u"list.mp4"_s, "#EXTM3U\n#EXTINF:1,\nhttp://127.0.0.1:9/a.ts\n");
    const QString output = m_sandbox.file(u"list.mp3"_s);
    EXPECT_NE(convert(m_sandbox.file(u"list.mp4"_s), output), 0);
    EXPECT_FALSE(QFile::exists(output));
}

TEST_F(TransVert, askedForItsEndItTakesTheHalfFileAlong)
{
    const QString input = make(u"long.avi"_s, {u"-f"_s, u"lavfi"_s, u"-i"_s,
                                               u"testsrc=size=640x360:rate=50:duration=120"_s,
                                               u"-c:v"_s, u"mpeg4"_s});
    test::ProgramRun program(
        m_sandbox, u"Transcoder/TransVert"_s,
        {u"transvert.exe"_s, u"-i"_s, input, u"-y"_s, m_sandbox.file(u"long.wmv"_s)});
    program.waitForOutput("time=");
    EXPECT_TRUE(QFile::exists(m_sandbox.file(u".converting-long.wmv"_s)));
    program.signal(SIGTERM);
    EXPECT_EQ(program.finish(), 128 + SIGTERM);
    EXPECT_FALSE(QFile::exists(m_sandbox.file(u".converting-long.wmv"_s)));
    EXPECT_FALSE(QFile::exists(m_sandbox.file(u"long.wmv"_s)));
}

} // namespace
} // namespace tollivar::transvert
