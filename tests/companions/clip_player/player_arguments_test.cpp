#include "companions/clip_player/player_arguments.h"

#include <gtest/gtest.h>

namespace tollivar::player {

using namespace Qt::StringLiterals;

TEST(PlayerArguments, nothingOpensTheEmptyWindow)
{
    EXPECT_EQ(readArguments({}).value(), QString());
}

TEST(PlayerArguments, theFileIsTakenAsItIsWhateverItsName)
{
    for (const QString &name :
         {u"a.mp4"_s, u"-file"_s, u"--help"_s, u"a b\"c"_s, u"http://a/b"_s}) {
        EXPECT_EQ(readArguments({u"-file"_s, name}).value(), name);
    }
}

TEST(PlayerArguments, everythingElseIsRefused)
{
    EXPECT_FALSE(readArguments({u"-file"_s}));
    EXPECT_FALSE(readArguments({u"-file"_s, {}}));
    EXPECT_FALSE(readArguments({u"-file"_s, u"a"_s, u"b"_s}));
    EXPECT_FALSE(readArguments({u"a.mp4"_s}));
    EXPECT_FALSE(readArguments({u"--script=x.lua"_s}));
}

} // namespace tollivar::player
