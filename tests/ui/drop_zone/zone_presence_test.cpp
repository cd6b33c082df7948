#include "ui/drop_zone/zone_presence.h"

#include <gtest/gtest.h>

namespace tollivar::ui {

TEST(ZonePresence, isAsThePersonWantsItWhateverTheWindowDoes)
{
    for (const bool isWanted : {true, false}) {
        ZonePresence presence;
        presence.setOptions({.isWanted = isWanted});
        EXPECT_EQ(presence.isShown(), isWanted);
        presence.setWindowMinimised(true);
        EXPECT_EQ(presence.isShown(), isWanted);
    }
}

TEST(ZonePresence, standsForTheMinimisedWindowWhenThatIsWanted)
{
    ZonePresence presence;
    presence.setOptions({.standsForWindow = true});
    EXPECT_FALSE(presence.isShown());
    presence.setWindowMinimised(true);
    EXPECT_TRUE(presence.isShown());
    presence.setWindowMinimised(false);
    EXPECT_FALSE(presence.isShown());
}

TEST(ZonePresence, staysWhenTheWindowComesBackIfItIsWantedAnyway)
{
    ZonePresence presence;
    presence.setOptions({.isWanted = true, .standsForWindow = true});
    presence.setWindowMinimised(true);
    presence.setWindowMinimised(false);
    EXPECT_TRUE(presence.isShown());
}

TEST(ZonePresence, anOptionThatIsSetWhileTheWindowIsMinimisedCountsAtOnce)
{
    ZonePresence presence;
    presence.setWindowMinimised(true);
    presence.setOptions({.standsForWindow = true});
    EXPECT_TRUE(presence.isShown());
    presence.setOptions({});
    EXPECT_FALSE(presence.isShown());
}

TEST(ZonePresence, isToggledByHand)
{
    ZonePresence presence;
    presence.toggle();
    EXPECT_TRUE(presence.isShown());
    presence.toggle();
    EXPECT_FALSE(presence.isShown());
}

TEST(ZonePresence, sentAwayByHandItStandsForTheWindowTheNextTimeAgain)
{
    ZonePresence presence;
    presence.setOptions({.isWanted = true, .standsForWindow = true});
    presence.setWindowMinimised(true);
    presence.toggle();
    EXPECT_FALSE(presence.isShown());
    presence.setWindowMinimised(false);
    EXPECT_FALSE(presence.isShown());
    presence.setWindowMinimised(true);
    EXPECT_TRUE(presence.isShown());
}

} // namespace tollivar::ui
