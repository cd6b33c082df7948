#include "convert/option_check.h"
#include "convert/profile_table.h"

#include <gtest/gtest.h>

namespace tollivar::convert {

using namespace Qt::StringLiterals;

namespace {

tasks::ConversionOptions musicOptions()
{
    tasks::ConversionOptions options;
    EXPECT_TRUE(ProfileTable::BuildProfiles().ApplyProfileDefaults(u"MP3 - MPEG Layer-3 (*.mp3)"_s,
                                                                   options));
    return options;
}

} // namespace

TEST(OptionCheck, everyProfileWithEveryChoicePasses)
{
    const auto table = ProfileTable::BuildProfiles();
    for (const QString &name : table.names()) {
        ConversionProfile profile;
        ASSERT_TRUE(table.GetProfile(name, profile));
        for (std::size_t option = 0; option < kProfileOptionCount; ++option) {
            for (const QString &choice : profile.options[option].choices) {
                tasks::ConversionOptions options;
                ASSERT_TRUE(table.ApplyProfileDefaults(name, options));
                options.*fieldOf(static_cast<ProfileOption>(option)) = choice;
                EXPECT_TRUE(areOfAProfile(options))
                    << name.toStdString() << ": " << choice.toStdString();
            }
        }
    }
}

TEST(OptionCheck, aValueThatWouldBecomeOptionsIsRefused)
{
    for (const QString &value : {u"320x240 -y /etc/passwd"_s, u"-i"_s, u"\"a\""_s, u"a\nb"_s,
                                 u"a\tb"_s, u"a\\b"_s, u" "_s}) {
        auto options = musicOptions();
        options.m_csVideoSizeOpts = value;
        EXPECT_FALSE(areOfAProfile(options)) << value.toStdString();
    }
}

TEST(OptionCheck, aTypeThatLeavesTheFolderIsRefused)
{
    for (const QString &type : {u"/../../evil.mp3"_s, u".exe"_s, u".mp3 -y x"_s, u"mp3"_s}) {
        auto options = musicOptions();
        options.m_csType = type;
        EXPECT_FALSE(areOfAProfile(options)) << type.toStdString();
    }
}

TEST(OptionCheck, parametersOfNoProfileAreRefused)
{
    auto options = musicOptions();
    options.m_csConvParam = u"-f tee"_s;
    EXPECT_FALSE(areOfAProfile(options));
}

} // namespace tollivar::convert
