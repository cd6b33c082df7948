#include "ui/dialog/hit_test.h"

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

constexpr QSize kWindow(400, 300);
const QMargins kSizeBox(5, 6, 7, 8);

Qt::Edges edgesAt(int x, int y)
{
    const HitArea area = edgeAt({x, y}, kWindow, kSizeBox, {});
    EXPECT_EQ(area.kind == HitArea::Kind::Edge, area.edges != Qt::Edges());
    return area.edges;
}

} // namespace

TEST(HitTest, theTopBandHoldsItsEdgeAndBothCorners)
{
    EXPECT_EQ(edgesAt(4, 5), Qt::TopEdge | Qt::LeftEdge);
    EXPECT_EQ(edgesAt(5, 5), Qt::TopEdge);
    EXPECT_EQ(edgesAt(392, 0), Qt::TopEdge);
    EXPECT_EQ(edgesAt(393, 0), Qt::TopEdge | Qt::RightEdge);
    EXPECT_EQ(edgesAt(200, 6), Qt::Edges());
}

TEST(HitTest, theBottomBandHoldsItsEdgeAndBothCorners)
{
    EXPECT_EQ(edgesAt(0, 292), Qt::BottomEdge | Qt::LeftEdge);
    EXPECT_EQ(edgesAt(200, 299), Qt::BottomEdge);
    EXPECT_EQ(edgesAt(399, 299), Qt::BottomEdge | Qt::RightEdge);
    EXPECT_EQ(edgesAt(200, 291), Qt::Edges());
}

TEST(HitTest, theSideBandsHoldTheirEdges)
{
    EXPECT_EQ(edgesAt(4, 150), Qt::LeftEdge);
    EXPECT_EQ(edgesAt(5, 150), Qt::Edges());
    EXPECT_EQ(edgesAt(393, 150), Qt::RightEdge);
}

TEST(HitTest, aRoundCornerIsAsWideAsItIsRound)
{
    EXPECT_EQ(edgeAt({14, 0}, kWindow, kSizeBox, {10, 10}).edges, Qt::TopEdge | Qt::LeftEdge);
    EXPECT_EQ(edgeAt({15, 0}, kWindow, kSizeBox, {10, 10}).edges, Qt::TopEdge);
    EXPECT_EQ(edgeAt({14, 150}, kWindow, kSizeBox, {10, 10}).edges, Qt::Edges());
}

TEST(HitTest, aWindowWithoutSizeBoxHasNoLiveEdge)
{
    EXPECT_EQ(edgeAt({0, 0}, kWindow, {}, {9, 9}), HitArea{});
}

TEST(HitTest, theCaptionBandHasInsetsTopAndBottom)
{
    const QMargins caption(10, 5, 20, 40);
    EXPECT_TRUE(isInCaption({10, 5}, kWindow, caption));
    EXPECT_FALSE(isInCaption({9, 5}, kWindow, caption));
    EXPECT_FALSE(isInCaption({380, 5}, kWindow, caption));
    EXPECT_FALSE(isInCaption({10, 4}, kWindow, caption));
    EXPECT_FALSE(isInCaption({10, 40}, kWindow, caption));
}

TEST(HitTest, onlyButtonsOptionsAndTextsAreNoCaption)
{
    EXPECT_FALSE(dragsWindow(u"ButtonUI"_s, u"btnMenu"_s));
    EXPECT_FALSE(dragsWindow(u"OptionUI"_s, u""_s));
    EXPECT_FALSE(dragsWindow(u"TextUI"_s, u"textNote"_s));
    EXPECT_TRUE(dragsWindow(u"TextUI"_s, u"textCaption"_s));
    EXPECT_TRUE(dragsWindow(u"HorizontalLayoutUI"_s, u""_s));
    EXPECT_TRUE(dragsWindow(u"EditUI"_s, u"x"_s));
}

} // namespace tollivar::ui
