#include "ui/dialog/round_corners.h"

#include <gtest/gtest.h>

namespace tollivar::ui {

TEST(RoundedRegion, coversAllButTheCorners)
{
    const QRegion region = roundedRegion({100, 60}, {9, 9});
    EXPECT_EQ(region.boundingRect(), QRect(0, 0, 100, 60));
    for (const QPoint inside : {QPoint(50, 0), QPoint(50, 59), QPoint(0, 30), QPoint(99, 30)}) {
        EXPECT_TRUE(region.contains(inside));
    }
    for (const QPoint corner : {QPoint(0, 0), QPoint(99, 0), QPoint(0, 59), QPoint(99, 59)}) {
        EXPECT_FALSE(region.contains(corner));
    }
}

TEST(RoundedRegion, cutsAllFourCornersAlike)
{
    const QRegion region = roundedRegion({101, 60}, {12, 9});
    QRegion mirrored;
    QRegion upsideDown;
    for (const QRect &piece : region) {
        mirrored +=
            QRect(101 - piece.x() - piece.width(), piece.y(), piece.width(), piece.height());
        upsideDown +=
            QRect(piece.x(), 60 - piece.y() - piece.height(), piece.width(), piece.height());
    }
    EXPECT_EQ(region, mirrored);
    EXPECT_EQ(region, upsideDown);
}

TEST(RoundedRegion, takesNoMoreThanTheWindow)
{
    EXPECT_EQ(roundedRegion({20, 10}, {50, 50}).boundingRect(), QRect(0, 0, 20, 10));
    EXPECT_EQ(roundedRegion({20, 10}, {0, 0}), QRegion(0, 0, 20, 10));
    EXPECT_TRUE(roundedRegion({0, 0}, {9, 9}).isEmpty());
}

} // namespace tollivar::ui
