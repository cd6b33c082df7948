#include "ui/drop_zone/zone_place.h"

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kZone(64, 64);
constexpr QRect kLeft(0, 0, 1000, 800);
constexpr QRect kRight(1000, 0, 500, 600);

QPoint placeOf(const QString &stored)
{
    return zonePlace(stored, kZone, {kLeft, kRight});
}

} // namespace

TEST(ZonePlace, isWhereItWasLeftOnAnyScreen)
{
    for (const QPoint place : {QPoint(0, 0), QPoint(10, 700), QPoint(1400, 500)}) {
        EXPECT_EQ(placeOf(storedZonePlace(place)), place);
    }
}

TEST(ZonePlace, isTheRightEdgeOfTheFirstScreenWhenNothingUsableIsStored)
{
    const QPoint byItself(1000 - 24 - 64, 200);
    for (const auto &stored :
         {u""_s, u"abc,def"_s, u"10"_s, u"10,"_s, u"1,2,3"_s, u"99999999999,1"_s,
          // Off the screen, partly off, below the smaller one, and across two.
          u"5000,10"_s, u"10,790"_s, u"-1,10"_s, u"1200,590"_s, u"990,10"_s}) {
        EXPECT_EQ(placeOf(stored), byItself) << stored.toStdString();
    }
}

} // namespace tollivar::ui
