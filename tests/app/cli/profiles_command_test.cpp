#include "app/cli/profiles_command.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace tollivar::app {

using convert::ProfileTable;
using namespace Qt::StringLiterals;

namespace {

QJsonArray parsed(const ProfileTable &table)
{
    const QJsonDocument document = QJsonDocument::fromJson(profilesJson(table));
    EXPECT_TRUE(document.isArray());
    return document.array();
}

} // namespace

TEST(ProfilesCommand, everyProfileHasItsNameTypeParametersAndEightLists)
{
    const ProfileTable table = ProfileTable::BuildProfiles();
    const QJsonArray profiles = parsed(table);
    ASSERT_EQ(profiles.size(), table.names().size());
    for (qsizetype place = 0; place < profiles.size(); ++place) {
        const QJsonObject profile = profiles[place].toObject();
        EXPECT_EQ(profile[u"name"].toString(), table.names()[place]);
        EXPECT_THAT(profile.keys(),
                    testing::UnorderedElementsAre(
                        u"name"_s, u"type"_s, u"parameters"_s, u"videoSize"_s, u"videoBitRate"_s,
                        u"videoFrameRate"_s, u"videoCodec"_s, u"audioBitRate"_s,
                        u"audioSampleRate"_s, u"audioChannel"_s, u"audioCodec"_s));
    }
    EXPECT_EQ(profiles[0][u"type"].toString(u"missing"_s), u""_s);
    EXPECT_EQ(profiles[1][u"parameters"].toString(), u"-vn"_s);
}

TEST(ProfilesCommand, aListBeginsWithTheDefaultAndHasEachValueOnce)
{
    constexpr std::array<QStringView, 4> kLines = {u"ProfileName = a \"b\" (*.x)", u"Type = .x",
                                                   u"VideoSize = 2x2, Auto, 1x1, 2x2,Auto", u"END"};
    const QJsonArray profiles = parsed(ProfileTable::BuildProfiles(kLines));
    ASSERT_EQ(profiles.size(), 1);
    EXPECT_EQ(profiles[0][u"name"].toString(), u"a \"b\" (*.x)"_s);
    EXPECT_EQ(profiles[0][u"videoSize"].toArray(), (QJsonArray{u"2x2"_s, u"Auto"_s, u"1x1"_s}));
    EXPECT_TRUE(profiles[0][u"audioCodec"].isArray());
    EXPECT_TRUE(profiles[0][u"audioCodec"].toArray().isEmpty());
}

TEST(ProfilesCommand, aTableWithoutProfilesIsAnEmptyArray)
{
    EXPECT_TRUE(parsed(ProfileTable::BuildProfiles({})).isEmpty());
}

} // namespace tollivar::app
