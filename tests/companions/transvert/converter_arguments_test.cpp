#include "companions/transvert/converter_arguments.h"
#include "companions/transvert/converter_run.h"

#include <gtest/gtest.h>

namespace tollivar::transvert {

using namespace Qt::StringLiterals;

namespace {

QStringList translate(const QStringList &arguments, QStringList &notes)
{
    const auto request = readArguments(arguments);
    EXPECT_TRUE(request);
    return request ? ffmpegArguments(*request, u"/t/part.x"_s, notes) : QStringList();
}

} // namespace

TEST(ConverterArguments, theProgramsNameMayStandTwice)
{
    EXPECT_EQ(readArguments({u"transvert.exe"_s, u"-i"_s, u"a"_s})->input, u"a"_s);
    EXPECT_EQ(readArguments({u"-i"_s, u"a"_s})->input, u"a"_s);
}

TEST(ConverterArguments, whatIsNotKnownIsRefused)
{
    EXPECT_FALSE(readArguments({}));
    EXPECT_FALSE(readArguments({u"-i"_s}));
    EXPECT_FALSE(readArguments({u"-i"_s, u"a"_s, u"-filter_complex"_s, u"x"_s}));
    EXPECT_FALSE(readArguments({u"-i"_s, u"a"_s, u"b"_s}));
    EXPECT_FALSE(readArguments({u"-y"_s, u"b"_s}));
}

TEST(ConverterArguments, oldOptionsBecomeTodaysAndFilesAreFilesOnly)
{
    QStringList notes;
    const QStringList arguments =
        translate({u"-i"_s, u"-x.flv"_s, u"-b"_s, u"512k"_s, u"-r"_s, u"25fps"_s, u"-s"_s,
                   u"320x240"_s, u"-ab"_s, u"64k"_s, u"-y"_s, u"/t/out.mp4"_s},
                  notes);
    const QString line = arguments.join(u' ');
    EXPECT_TRUE(line.contains(u"-protocol_whitelist file,pipe -i file:-x.flv"_s));
    EXPECT_TRUE(line.contains(u"-b:v 512k -r 25 -s 320x240 -b:a 64k"_s)) << line.toStdString();
    EXPECT_TRUE(line.endsWith(u"-pix_fmt yuv420p -y file:/t/part.x"_s));
    EXPECT_TRUE(notes.isEmpty());
}

TEST(ConverterArguments, whatAFormatCannotDoIsBroughtToTheNearestAndTold)
{
    QStringList notes;
    const QString line = translate({u"-i"_s, u"a"_s, u"-ar"_s, u"54000"_s, u"-s"_s, u"321x241"_s,
                                    u"-y"_s, u"b.mp3"_s},
                                   notes)
                             .join(u' ');
    EXPECT_TRUE(line.contains(u"-ar 48000 -s 320x240"_s)) << line.toStdString();
    EXPECT_EQ(notes.size(), 2);
    notes.clear();
    EXPECT_TRUE(translate({u"-i"_s, u"a"_s, u"-ar"_s, u"48000"_s, u"-y"_s, u"b.SWF"_s}, notes)
                    .join(u' ')
                    .contains(u"-ar 44100"_s));
    EXPECT_EQ(notes.size(), 1);
}

TEST(ConverterRun, progressIsToldInTheOldForm)
{
    EXPECT_EQ(translatedLine("out_time_us=3200000"), "time=3.20 bitrate=0.0kbits/s");
    EXPECT_EQ(translatedLine("out_time_us=-5"), "time=0.00 bitrate=0.0kbits/s");
    EXPECT_EQ(translatedLine("frame=12"), "");
    EXPECT_EQ(translatedLine("progress=end"), "");
    EXPECT_EQ(translatedLine("  Duration: 00:00:20.00, start: 0"),
              "  Duration: 00:00:20.00, start: 0");
    EXPECT_EQ(translatedLine("Invalid data found"), "Invalid data found");
}

} // namespace tollivar::transvert
