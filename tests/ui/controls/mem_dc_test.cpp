#include "ui/controls/mem_dc.h"

#include <gtest/gtest.h>

namespace tollivar::ui {
namespace {

QImage screen(qreal ratio, const QSize &size = {40, 30})
{
    QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    return image;
}

TEST(MemDc, nothingReachesTheTargetBeforeTheEnd)
{
    QImage target = screen(1);
    QImage surface;
    QPainter painter(&target);
    {
        CMemDC memory(painter, {10, 10, 5, 5}, surface);
        memory.painter().fillRect(QRect(10, 10, 5, 5), Qt::red);
        EXPECT_EQ(target.pixelColor(12, 12), QColor(Qt::white));
    }
    EXPECT_EQ(target.pixelColor(12, 12), QColor(Qt::red));
}

TEST(MemDc, onlyTheRectangleIsCopied)
{
    QImage target = screen(1);
    QImage surface;
    QPainter painter(&target);
    {
        CMemDC memory(painter, {10, 10, 5, 5}, surface);
        memory.painter().fillRect(QRect(0, 0, 40, 30), Qt::red);
    }
    EXPECT_EQ(target.pixelColor(9, 12), QColor(Qt::white));
    EXPECT_EQ(target.pixelColor(10, 10), QColor(Qt::red));
    EXPECT_EQ(target.pixelColor(14, 14), QColor(Qt::red));
    EXPECT_EQ(target.pixelColor(15, 12), QColor(Qt::white));
    EXPECT_EQ(target.pixelColor(12, 15), QColor(Qt::white));
}

TEST(MemDc, aSurfaceServesManyRectangles)
{
    QImage target = screen(1);
    QImage surface;
    QPainter painter(&target);
    const std::vector<std::pair<QRect, QColor>> parts = {
        {{0, 0, 30, 10}, Qt::red}, {{5, 10, 4, 4}, Qt::green}, {{0, 20, 40, 10}, Qt::blue}};
    for (const auto &[rectangle, color] : parts) {
        CMemDC memory(painter, rectangle, surface);
        memory.painter().fillRect(rectangle, color);
    }
    for (const auto &[rectangle, color] : parts) {
        EXPECT_EQ(target.pixelColor(rectangle.center()), color);
    }
    EXPECT_EQ(target.pixelColor(10, 12), QColor(Qt::white));
}

TEST(MemDc, theTargetsPlaceAndClipHold)
{
    QImage target = screen(1);
    QImage surface;
    QPainter painter(&target);
    painter.translate(10, 5);
    painter.setClipRect(QRect(0, 0, 10, 3));
    {
        CMemDC memory(painter, {0, 0, 20, 10}, surface);
        memory.painter().fillRect(QRect(0, 0, 20, 10), Qt::red);
    }
    painter.fillRect(QRect(1, 0, 1, 10), Qt::blue);
    EXPECT_EQ(target.pixelColor(10, 5), QColor(Qt::red));
    EXPECT_EQ(target.pixelColor(11, 6), QColor(Qt::blue));
    EXPECT_EQ(target.pixelColor(9, 5), QColor(Qt::white));
    EXPECT_EQ(target.pixelColor(20, 5), QColor(Qt::white));
    EXPECT_EQ(target.pixelColor(12, 8), QColor(Qt::white));
}

/// What a screen of that ratio shows of stripes, drawn at once or by way of the memory.
QImage stripes(qreal ratio, bool throughMemory)
{
    QImage target = screen(ratio);
    QImage surface;
    QPainter painter(&target);
    const auto draw = [](QPainter &to, int row) {
        to.fillRect(QRect(3, row, 30, 3), row % 2 == 0 ? Qt::cyan : Qt::yellow);
        to.fillRect(QRect(3, row + 2, 30, 1), Qt::black);
        to.fillRect(QRect(17, row, 1, 3), Qt::red);
    };
    for (int row = 0; row < 27; row += 3) {
        if (throughMemory) {
            CMemDC memory(painter, {3, row, 30, 3}, surface);
            draw(memory.painter(), row);
        } else {
            draw(painter, row);
        }
    }
    return target;
}

TEST(MemDc, showsTheSamePixelsAsDrawingAtOnceAtAnyRatio)
{
    for (const qreal ratio : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
        EXPECT_EQ(stripes(ratio, true), stripes(ratio, false)) << ratio;
    }
}

TEST(MemDc, anEmptyRectangleShowsNothing)
{
    QImage target = screen(1);
    QImage surface;
    QPainter painter(&target);
    {
        CMemDC memory(painter, {5, 5, 0, 0}, surface);
        memory.painter().fillRect(QRect(0, 0, 40, 30), Qt::red);
    }
    EXPECT_EQ(target, screen(1));
}

} // namespace
} // namespace tollivar::ui
