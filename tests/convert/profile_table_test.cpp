#include "convert/builtin_profiles.h"
#include "convert/profile_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace tollivar::convert {

using namespace Qt::StringLiterals;

namespace {

ConversionProfile profileNamed(const QString &name)
{
    ConversionProfile profile;
    EXPECT_TRUE(ProfileTable::BuildProfiles().GetProfile(name, profile)) << name.toStdString();
    return profile;
}

tasks::ConversionOptions defaultsOf(const QString &name)
{
    tasks::ConversionOptions options;
    EXPECT_TRUE(ProfileTable::BuildProfiles().ApplyProfileDefaults(name, options));
    return options;
}

} // namespace

TEST(ProfileTable, theBeginningOfANameIsEnoughWhenOnlyOneProfileBeginsSo)
{
    const auto table = ProfileTable::BuildProfiles();
    EXPECT_EQ(table.namesMeantBy(u"mp3"_s), QStringList{u"MP3 - MPEG Layer-3 (*.mp3)"_s});
    EXPECT_EQ(table.namesMeantBy(u"ipod"_s).size(), 7);
    EXPECT_EQ(table.namesMeantBy(u"iPod Touch (480x320) MPEG-4 Normal (*.mp4)"_s).size(), 1);
    EXPECT_EQ(table.namesMeantBy(u"MPEG"_s).size(), 0);
    EXPECT_EQ(table.namesMeantBy(u".*"_s).size(), 0);
}

TEST(ProfileTable, holdsFifteenProfilesFromSixteenBlocksInWrittenOrder)
{
    const auto lines = builtInProfileLines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), QStringView(u"END")), 16);
    const QStringList names = ProfileTable::BuildProfiles().names();
    ASSERT_EQ(names.size(), 15);
    EXPECT_EQ(names.front(), ProfileTable::defaultName());
    EXPECT_EQ(names[2], u"FLV - Flash Video Fomat(*.flv)"_s);
    EXPECT_EQ(names[9], u"iPod Video2 (640x480) MPEG-4 Excellent (*.mp4)"_s);
    EXPECT_EQ(names[10], u"iPod Video2 For TV (*.mp4)"_s);
    EXPECT_EQ(names[11], u"PSP - PSP MPEG-4 Video (*.mp4)"_s);
    EXPECT_EQ(names.back(), u"AVI - Audio-Video Interleaved (*.avi)"_s);
}

TEST(ProfileTable, keepingTheOriginalFormatMeansNoOutputType)
{
    EXPECT_EQ(defaultsOf(ProfileTable::defaultName()).m_csType, u""_s);
}

TEST(ProfileTable, mp3DropsTheVideoAndHasItsOwnRates)
{
    const auto options = defaultsOf(u"MP3 - MPEG Layer-3 (*.mp3)"_s);
    EXPECT_EQ(options.m_csType, u".mp3"_s);
    EXPECT_EQ(options.m_csConvParam, u"-vn"_s);
    EXPECT_EQ(options.m_csAudioBitRateOpts, u"128"_s);
    EXPECT_EQ(options.m_csAudioSampleRateOpts, u"48000"_s);
    EXPECT_EQ(options.m_csAudioChannelOpts, u"2"_s);
}

TEST(ProfileTable, pspAsksForItsFormatSizeAndRates)
{
    const auto options = defaultsOf(u"PSP - PSP MPEG-4 Video (*.mp4)"_s);
    EXPECT_EQ(options.m_csConvParam, u"-f psp"_s);
    EXPECT_EQ(options.m_csVideoSizeOpts, u"320x240"_s);
    EXPECT_EQ(options.m_csVideoBitRateOpts, u"512"_s);
    EXPECT_EQ(options.m_csAudioSampleRateOpts, u"24000"_s);
}

TEST(ProfileTable, choicesAreTheDistinctValues)
{
    const auto profile = profileNamed(u"AVI - Audio-Video Interleaved (*.avi)"_s);
    EXPECT_THAT(
        profile.values(ProfileOption::VideoBitRate).choices,
        testing::UnorderedElementsAre(u"1200"_s, u"Auto"_s, u"512"_s, u"1500"_s, u"2500"_s));
    EXPECT_EQ(profile.values(ProfileOption::VideoBitRate).written.front(), u"1200"_s);
}

TEST(ProfileTable, onlyWmvNamesCodecs)
{
    const auto table = ProfileTable::BuildProfiles();
    for (const QString &name : table.names()) {
        const auto options = defaultsOf(name);
        const bool isWmv = name.startsWith(u"WMV"_s);
        EXPECT_EQ(options.m_csVideoCodecOpts, isWmv ? u"wmv2"_s : u"Auto"_s);
        EXPECT_EQ(options.m_csAudioCodecOpts, isWmv ? u"wmav2"_s : u"Auto"_s);
        EXPECT_EQ(options.m_csVideoFrameRateOpts, u"Auto"_s);
    }
}

TEST(ProfileTable, anUnknownNameChangesNothing)
{
    const auto table = ProfileTable::BuildProfiles();
    ConversionProfile profile;
    profile.m_csType = u".keep"_s;
    EXPECT_FALSE(table.GetProfile(u"no such profile"_s, profile));
    EXPECT_EQ(profile.m_csType, u".keep"_s);
    tasks::ConversionOptions options;
    options.m_csVideoSizeOpts = u"1x1"_s;
    EXPECT_FALSE(table.ApplyProfileDefaults(u"no such profile"_s, options));
    EXPECT_EQ(options.m_csVideoSizeOpts, u"1x1"_s);
}

TEST(ProfileTable, defaultsLeaveTheNumbersAlone)
{
    tasks::ConversionOptions options;
    options.m_nStartSeconds = 7;
    ASSERT_TRUE(ProfileTable::BuildProfiles().ApplyProfileDefaults(u"MP3 - MPEG Layer-3 (*.mp3)"_s,
                                                                   options));
    EXPECT_EQ(options.m_nStartSeconds, 7);
    EXPECT_EQ(options.m_csProfileName, u"MP3 - MPEG Layer-3 (*.mp3)"_s);
}

TEST(ProfileTable, anOptionWithoutValuesKeepsWhatItHad)
{
    constexpr std::array<QStringView, 3> kLines = {u"ProfileName = bare", u"Type = .x", u"END"};
    tasks::ConversionOptions options;
    options.m_csVideoSizeOpts = u"1x1"_s;
    ASSERT_TRUE(ProfileTable::BuildProfiles(kLines).ApplyProfileDefaults(u"bare"_s, options));
    EXPECT_EQ(options.m_csVideoSizeOpts, u"1x1"_s);
    EXPECT_EQ(options.m_csType, u".x"_s);
}

TEST(ProfileTable, keysAreReadWithoutRegardToCaseAndEmptyPiecesAreKept)
{
    constexpr std::array<QStringView, 5> kLines = {u" profileNAME =  a , b", u"TYPE = ",
                                                   u"videosize= 1x1,, 2x2 ", u"noise", u"END"};
    ConversionProfile profile;
    ASSERT_TRUE(ProfileTable::BuildProfiles(kLines).GetProfile(u"a"_s, profile));
    EXPECT_EQ(profile.m_csType, u""_s);
    EXPECT_EQ(profile.values(ProfileOption::VideoSize).written,
              (QStringList{u"1x1"_s, u""_s, u"2x2"_s}));
}

TEST(ProfileTable, commonChoicesAreWhatEveryNamedProfileOffers)
{
    const auto table = ProfileTable::BuildProfiles();
    const auto common = table.CommonChoices({u"PSP - PSP MPEG-4 Video (*.mp4)"_s, u"unknown"_s,
                                             u"iPod (320x240) MPEG-4 Normal (*.mp4)"_s});
    EXPECT_THAT(common[static_cast<std::size_t>(ProfileOption::VideoSize)],
                testing::UnorderedElementsAre(u"320x240"_s, u"240x160"_s));
    EXPECT_TRUE(common[static_cast<std::size_t>(ProfileOption::AudioSampleRate)].empty());
    EXPECT_TRUE(table.CommonChoices({u"unknown"_s})[0].empty());
}

TEST(ProfileTable, theScreenShowsAutoFirstThenNumbersThenWords)
{
    EXPECT_EQ(orderedForScreen({u"wmv2"_s, u"640x480"_s, u"128x96"_s, u"Auto"_s, u"1280x720"_s}),
              (QStringList{u"Auto"_s, u"128x96"_s, u"640x480"_s, u"1280x720"_s, u"wmv2"_s}));
    EXPECT_EQ(orderedForScreen({u"1200"_s, u"64"_s, u"512"_s}),
              (QStringList{u"64"_s, u"512"_s, u"1200"_s}));
}

} // namespace tollivar::convert
