#include "convert/conversion_run.h"
#include "convert/converter_command.h"
#include "convert/profile_table.h"
#include "tests/support/rtmp_server.h"
#include "tests/support/sandbox.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <future>

namespace tollivar::convert {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Conversions by the real converter and ffmpeg.
class ConversionRun : public ::testing::Test {
protected:
    void SetUp() override
    {
        // The converter is named relatively to the program directory.
        m_before = QDir::currentPath();
        QDir::setCurrent(QStringLiteral(TOLLIVAR_PROGRAMS));
        m_task.strOutputFolder = m_sandbox.path() + u'/';
        m_task.strOutputName = u"my clip, 100%"_s;
        m_task.strFileType = u".mp4"_s;
    }
    void TearDown() override { QDir::setCurrent(m_before); }

    void make(const QStringList &sources, const QStringList &codecs = {}) const
    {
        QStringList command{u"ffmpeg"_s, u"-nostdin"_s, u"-v"_s, u"error"_s, u"-y"_s};
        for (const QString &source : sources) {
            command += {u"-f"_s, u"lavfi"_s, u"-i"_s, source};
        }
        test::runToEnd(command + codecs + QStringList{m_task.outputPath()});
    }

    void choose(const QString &profile)
    {
        ASSERT_TRUE(ProfileTable::BuildProfiles().ApplyProfileDefaults(profile, m_task.m_ConvOpts));
    }

    ConversionResult run()
    {
        return RunConversion(m_task, m_stop,
                             [this](int percent) { m_percents.push_back(percent); });
    }

    /// The half file, once there is one of that type.
    template<typename Result>
    QString waitForHalf(const std::future<Result> &running, const QString &type) const
    {
        QString half = m_sandbox.file(u".converting-"_s + m_task.strOutputName + type);
        while (!QFile::exists(half) && running.wait_for(1ms) != std::future_status::ready) {
        }
        EXPECT_TRUE(QFile::exists(half));
        return half;
    }

    /// Has a shell's script do the conversions. Questions about files go to the real converter,
    /// unless another script answers them.
    void useConverter(const QByteArray &conversion, const QByteArray &question = {}) const
    {
        QDir().mkpath(m_sandbox.file(u"Transcoder"_s));
        m_sandbox.write(u"Transcoder/TransVert"_s, "#!/bin/sh\ncase \"$*\" in *' -y '*) " +
                                                       conversion + "; exit;; esac\n" + question +
                                                       "\nexec '" TOLLIVAR_PROGRAMS
                                                       "/Transcoder/TransVert' \"$@\"\n");
        QFile::setPermissions(m_sandbox.file(u"Transcoder/TransVert"_s),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QDir::setCurrent(m_sandbox.path());
    }

    QByteArray probe() const
    {
        return test::runToEnd({u"ffprobe"_s, u"-v"_s, u"error"_s, u"-show_entries"_s,
                               u"stream=codec_name,width,height,sample_rate,channels"_s, u"-of"_s,
                               u"default=noprint_wrappers=1"_s, convertedPath(m_task)});
    }

    test::Sandbox m_sandbox;
    tasks::TaskInfo m_task;
    platform::AutoResetEvent m_stop;
    std::vector<int> m_percents;
    QString m_before;
};

TEST_F(ConversionRun, everyProfileMakesAFileThatReads)
{
    m_task.strFileType = u".mkv"_s;
    make({u"testsrc=size=321x241:rate=25:duration=2"_s, u"sine=duration=2"_s},
         {u"-c:v"_s, u"mpeg4"_s, u"-c:a"_s, u"aac"_s, u"-ac"_s, u"2"_s});
    for (const QString &profile : ProfileTable::BuildProfiles().names()) {
        if (profile == ProfileTable::defaultName()) {
            continue;
        }
        choose(profile);
        const ConversionResult result = run();
        EXPECT_EQ(result.end, ConversionEnd::Ended);
        EXPECT_TRUE(result.isGood)
            << profile.toStdString() << ": " << result.lastLine.toStdString();
    }
    // Nothing but the files themselves is left.
    const auto files = QDir(m_sandbox.path()).entryList(QDir::Files | QDir::Hidden);
    EXPECT_TRUE(files.filter(u"converting"_s).isEmpty()) << files.join(u' ').toStdString();
}

TEST_F(ConversionRun, optionsOfNoProfileAreRefusedBeforeAnythingRuns)
{
    make({u"sine=duration=1"_s});
    choose(u"MP3 - MPEG Layer-3 (*.mp3)"_s);
    m_task.m_ConvOpts.m_csType = u"/../outside.mp3"_s;
    const ConversionResult result = run();
    EXPECT_FALSE(result.isGood);
    EXPECT_EQ(result.lastLine, u"the task's conversion options are damaged"_s);
    EXPECT_TRUE(m_percents.empty());
}

TEST_F(ConversionRun, theOutputHasTheProfilesSizeAndRates)
{
    make({u"testsrc=size=640x360:rate=25:duration=2"_s, u"sine=duration=2"_s});
    choose(u"WMV - Windows Media Video (*.wmv)"_s);
    m_task.m_ConvOpts.m_csVideoSizeOpts = u"320x240"_s;
    EXPECT_TRUE(run().isGood);
    const QByteArray found = probe();
    for (const char *what : {"codec_name=wmv2", "width=320", "height=240", "codec_name=wmav2",
                             "sample_rate=48000", "channels=2"}) {
        EXPECT_TRUE(found.contains(what)) << what << '\n' << found.constData();
    }
}

TEST_F(ConversionRun, aFileWithoutSoundCannotBecomeMusicAndLeavesNothing)
{
    make({u"testsrc=size=320x240:rate=25:duration=1"_s});
    choose(u"MP3 - MPEG Layer-3 (*.mp3)"_s);
    const ConversionResult result = run();
    EXPECT_FALSE(result.isGood);
    EXPECT_FALSE(result.lastLine.isEmpty());
    EXPECT_FALSE(QFile::exists(convertedPath(m_task)));
    EXPECT_TRUE(QFile::exists(m_task.outputPath()));
}

TEST_F(ConversionRun, aDamagedInputFailsAndSurvivesWhenItIsItsOwnOutput)
{
    m_sandbox.write(m_task.strOutputName + u".mp4"_s, "not a video at all");
    choose(u"MP4 - MPEG-4 Video (*.mp4)"_s);
    EXPECT_FALSE(run().isGood);
    EXPECT_EQ(m_sandbox.read(m_task.strOutputName + u".mp4"_s), "not a video at all");
}

TEST_F(ConversionRun, aStopEndsItAtOnceAndLeavesNoHalfFile)
{
    make({u"testsrc=size=1280x720:rate=50:duration=60"_s}, {u"-c:v"_s, u"mpeg4"_s});
    choose(u"AVI - Audio-Video Interleaved (*.avi)"_s);
    auto running = std::async(std::launch::async, [this] { return run(); });
    const QString half = waitForHalf(running, u".avi"_s);
    const auto begin = std::chrono::steady_clock::now();
    m_stop.set();
    EXPECT_EQ(running.get().end, ConversionEnd::Stopped);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
    EXPECT_FALSE(QFile::exists(half));
    EXPECT_FALSE(QFile::exists(convertedPath(m_task)));
}

TEST_F(ConversionRun, aStopOfOneThatIsItsOwnOutputLeavesTheInputAsItWas)
{
    make({u"testsrc=size=640x360:rate=50:duration=60"_s}, {u"-c:v"_s, u"mpeg4"_s});
    const QByteArray before = m_sandbox.read(m_task.strOutputName + u".mp4"_s);
    choose(u"MP4 - MPEG-4 Video (*.mp4)"_s);
    auto running = std::async(std::launch::async, [this] { return run(); });
    waitForHalf(running, u".mp4"_s);
    m_stop.set();
    EXPECT_EQ(running.get().end, ConversionEnd::Stopped);
    EXPECT_EQ(m_sandbox.read(m_task.strOutputName + u".mp4"_s), before);
}

TEST_F(ConversionRun, oneThatIsItsOwnOutputTakesTheInputsPlace)
{
    make({u"testsrc=size=320x240:rate=25:duration=1"_s});
    choose(u"MP4 - MPEG-4 Video (*.mp4)"_s);
    EXPECT_TRUE(run().isGood);
    EXPECT_TRUE(probe().contains("width=640"));
}

TEST_F(ConversionRun, aConverterThatIsKilledLeavesNoHalfFile)
{
    make({u"sine=duration=1"_s});
    choose(u"MP3 - MPEG Layer-3 (*.mp3)"_s);
    const QString half = m_sandbox.file(u".converting-"_s + m_task.strOutputName + u".mp3"_s);
    useConverter("echo half > '" + half.toUtf8() + "'; echo begun; kill -KILL $$");
    const ConversionResult result = run();
    EXPECT_EQ(result.end, ConversionEnd::Ended);
    EXPECT_FALSE(result.isGood);
    EXPECT_EQ(result.lastLine, u"begun"_s);
    EXPECT_FALSE(QFile::exists(half));
    EXPECT_FALSE(QFile::exists(convertedPath(m_task)));
}

TEST_F(ConversionRun, aConverterThatSaysItSucceededIsNotBelievedWithoutAFileThatReads)
{
    make({u"sine=duration=1"_s});
    choose(u"MP3 - MPEG Layer-3 (*.mp3)"_s);
    const QByteArray output = "'" + convertedPath(m_task).toUtf8() + "'";
    for (const QByteArray &deed :
         {QByteArray("true"), "touch " + output, "echo nonsense > " + output}) {
        useConverter(deed + "; echo done");
        const ConversionResult result = run();
        EXPECT_EQ(result.end, ConversionEnd::Ended) << deed.constData();
        EXPECT_FALSE(result.isGood) << deed.constData();
        EXPECT_EQ(result.lastLine, u"done"_s) << deed.constData();
    }
}

TEST_F(ConversionRun, aStopWhileTheOutputIsBeingCheckedIsAStopAndNoFailure)
{
    make({u"sine=duration=1"_s});
    choose(u"MP3 - MPEG Layer-3 (*.mp3)"_s);
    const QByteArray output = convertedPath(m_task).toUtf8();
    const QString checking = m_sandbox.file(u"checking"_s);
    useConverter("echo music > '" + output + "'", "case \"$*\" in *'" + output + "') echo > '" +
                                                      checking.toUtf8() +
                                                      "'; exec sleep 600;; esac");
    auto running = std::async(std::launch::async, [this] { return run(); });
    while (!QFile::exists(checking) && running.wait_for(1ms) != std::future_status::ready) {
    }
    m_stop.set();
    EXPECT_EQ(running.get().end, ConversionEnd::Stopped);
}

TEST_F(ConversionRun, theLengthOfAFileIsTold)
{
    make({u"sine=duration=3"_s});
    QString duration;
    EXPECT_TRUE(ProbeDuration(m_task.outputPath(), m_stop, duration));
    EXPECT_EQ(duration, u"00:00:03"_s);
    EXPECT_FALSE(ProbeDuration(m_sandbox.file(u"missing.mp4"_s), m_stop, duration));
}

} // namespace tollivar::convert
