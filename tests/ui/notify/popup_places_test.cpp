#include "ui/notify/popup_places.h"

#include <gtest/gtest.h>

namespace tollivar::ui {

namespace {

constexpr QRect kArea(100, 50, 1000, 500);
constexpr QSize kPopup(340, 140);

} // namespace

TEST(PopupPlaces, theFirstIsTheCornerAndTheNextStandsAbove)
{
    EXPECT_EQ(popupPlace(0, kPopup, kArea).bottomRight(), kArea.bottomRight());
    EXPECT_EQ(popupPlace(1, kPopup, kArea).bottomRight(), kArea.bottomRight() - QPoint(0, 140 + 8));
}

TEST(PopupPlaces, noneCoversAnotherWhileThereIsRoom)
{
    constexpr int kRoomFor = 2 * 3;
    for (int place = 0; place < kRoomFor; ++place) {
        EXPECT_TRUE(kArea.contains(popupPlace(place, kPopup, kArea))) << place;
        for (int other = 0; other < place; ++other) {
            EXPECT_FALSE(
                popupPlace(place, kPopup, kArea).intersects(popupPlace(other, kPopup, kArea)))
                << place << " and " << other;
        }
    }
}

TEST(PopupPlaces, aFullAreaIsFilledAnew)
{
    EXPECT_EQ(popupPlace(6, kPopup, kArea), popupPlace(0, kPopup, kArea));
    EXPECT_EQ(popupPlace(7, kPopup, kArea), popupPlace(1, kPopup, kArea));
}

TEST(PopupPlaces, anAreaThatIsTooSmallHasOnePlace)
{
    const QRect small(0, 0, 100, 100);
    EXPECT_EQ(popupPlace(0, kPopup, small).bottomRight(), small.bottomRight());
    EXPECT_EQ(popupPlace(3, kPopup, small), popupPlace(0, kPopup, small));
}

} // namespace tollivar::ui
