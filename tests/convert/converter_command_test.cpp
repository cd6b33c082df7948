#include "convert/converter_command.h"

#include <gtest/gtest.h>

namespace tollivar::convert {

using namespace Qt::StringLiterals;

namespace {

tasks::TaskInfo plainTask()
{
    tasks::TaskInfo task;
    task.strOutputFolder = u"/v/"_s;
    task.strOutputName = u"my clip"_s;
    task.strFileType = u".flv"_s;
    task.m_ConvOpts.m_csType = u".mp4"_s;
    return task;
}

QString optionsOf(const tasks::TaskInfo &task)
{
    const QString line = BuildCommandLine(task).line;
    const qsizetype start = line.indexOf(u".flv\" "_s) + 6;
    return line.mid(start, line.indexOf(u"-y "_s) - start);
}

} // namespace

TEST(ConverterCommand, withEveryOptionAutoNothingStandsBetweenTheFiles)
{
    tasks::TaskInfo task = plainTask();
    auto &options = task.m_ConvOpts;
    for (auto field : {&tasks::ConversionOptions::m_csVideoSizeOpts,
                       &tasks::ConversionOptions::m_csVideoBitRateOpts,
                       &tasks::ConversionOptions::m_csAudioCodecOpts}) {
        options.*field = u"Auto"_s;
    }
    EXPECT_EQ(BuildCommandLine(task).line,
              u".\\Transcoder\\TransVert.exe transvert.exe -i \"/v/my clip.flv\"  -y "
              u"\"/v/my clip.mp4\" "_s);
}

TEST(ConverterCommand, optionsStandInTheirOrderWithTheirSuffixes)
{
    tasks::TaskInfo task = plainTask();
    auto &options = task.m_ConvOpts;
    options.m_csConvParam = u"-f psp"_s;
    options.m_csVideoCodecOpts = u"wmv2"_s;
    options.m_csVideoSizeOpts = u"320x240"_s;
    options.m_csVideoBitRateOpts = u"512"_s;
    options.m_csVideoFrameRateOpts = u"25"_s;
    options.m_csAudioCodecOpts = u"wmav2"_s;
    options.m_csAudioSampleRateOpts = u"44100"_s;
    options.m_csAudioBitRateOpts = u"64"_s;
    options.m_csAudioChannelOpts = u"2"_s;
    EXPECT_EQ(optionsOf(task), u"-f psp -vcodec wmv2 -s 320x240 -b 512k -r 25fps -acodec wmav2 "
                               u"-ar 44100 -ab 64k -ac 2 "_s);
}

TEST(ConverterCommand, onlyTheExactWordAutoIsLeftOut)
{
    tasks::TaskInfo task = plainTask();
    task.m_ConvOpts.m_csVideoSizeOpts = u"auto"_s;
    EXPECT_EQ(optionsOf(task), u" -s auto "_s);
}

TEST(ConverterCommand, aPartOfTheFileIsGivenByStartAndLength)
{
    tasks::TaskInfo task = plainTask();
    task.m_ConvOpts.m_nTotalSeconds = 100;
    task.m_ConvOpts.m_nLengthSeconds = 100;
    EXPECT_EQ(optionsOf(task), u" "_s);
    EXPECT_EQ(BuildCommandLine(task).seconds, 100);
    task.m_ConvOpts.m_nStartSeconds = 30;
    EXPECT_EQ(optionsOf(task), u" -ss 30 "_s);
    EXPECT_EQ(BuildCommandLine(task).seconds, 70);
    task.m_ConvOpts.m_nLengthSeconds = 20;
    EXPECT_EQ(optionsOf(task), u" -ss 30 -t 20 "_s);
    EXPECT_EQ(BuildCommandLine(task).seconds, 20);
    task.m_ConvOpts.m_nTotalSeconds = 0;
    EXPECT_EQ(BuildCommandLine(task).seconds, 0);
}

TEST(ConverterCommand, theSameTypeMakesInputAndOutputOneFile)
{
    tasks::TaskInfo task = plainTask();
    task.m_ConvOpts.m_csType = u".flv"_s;
    EXPECT_TRUE(BuildCommandLine(task).line.endsWith(u"-y \"/v/my clip.flv\" "_s));
    EXPECT_EQ(convertedPath(task), task.outputPath());
}

} // namespace tollivar::convert
