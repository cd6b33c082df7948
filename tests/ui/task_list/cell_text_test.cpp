#include "ui/task_list/cell_text.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace tollivar::ui {
namespace {

using namespace Qt::StringLiterals;

/// The smallest rectangle around everything that `paint` drew in black on white.
template<typename Paint>
QRect inkOf(Paint paint)
{
    QImage image(300, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    paint(painter);
    painter.end();
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != QColor(Qt::white)) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink;
}

int widthOf(const QString &text)
{
    return QFontMetrics(QFont()).horizontalAdvance(text);
}

TEST(CellText, aLineStandsInTheMiddleOfItsHeight)
{
    const QRect ink = inkOf([](QPainter &p) {
        paintLine(p, {0, 20, 300, 60}, Qt::AlignLeft, u"HHH"_s);
    });
    EXPECT_NEAR(ink.center().y(), 50, 2);
    EXPECT_NEAR(ink.left(), kTextMargin, 2);
}

TEST(CellText, aCentredLineStandsInTheMiddleOfItsWidth)
{
    const QRect ink = inkOf([](QPainter &p) {
        paintLine(p, {0, 0, 300, 40}, Qt::AlignHCenter, u"HHH"_s);
    });
    EXPECT_NEAR(ink.center().x(), 150, 2);
}

TEST(CellText, aLongLineStaysInsideItsArea)
{
    const QRect area(50, 10, 60, 30);
    const QRect ink =
        inkOf([&area](QPainter &p) { paintLine(p, area, Qt::AlignLeft, QString(500, u'H')); });
    EXPECT_TRUE(area.contains(ink));
    EXPECT_GT(ink.width(), area.width() / 2);
}

TEST(CellText, onlyALineThatDoesNotFitIsCut)
{
    const QString text = u"a name of some length"_s;
    const int width = widthOf(text) + 2 * kTextMargin;
    EXPECT_FALSE(isLineCut(text, width, QFont()));
    EXPECT_TRUE(isLineCut(text, width - 1, QFont()));
    EXPECT_FALSE(isLineCut({}, 0, QFont()));
}

TEST(CellText, wordsBreakIntoCentredLines)
{
    const QString text = u"HHHH HHHH HHHH"_s;
    const int height = QFontMetrics(QFont()).height();
    const QRect area(100, 10, widthOf(u"HHHH HH"_s) + 2 * kTextMargin, 3 * height);
    const QRect ink = inkOf([&](QPainter &p) { paintWrapped(p, area, text); });
    EXPECT_TRUE(area.contains(ink));
    EXPECT_GT(ink.height(), 2 * height);
    EXPECT_NEAR(ink.center().x(), area.center().x(), 2);
    EXPECT_FALSE(isWrappedCut(text, area.size(), QFont()));
}

TEST(CellText, whatTheHeightDoesNotHoldIsCut)
{
    const QString text = u"HHHH HHHH HHHH"_s;
    const int height = QFontMetrics(QFont()).height();
    const QRect area(100, 10, widthOf(u"HHHH HH"_s) + 2 * kTextMargin, 2 * height);
    EXPECT_TRUE(isWrappedCut(text, area.size(), QFont()));
    EXPECT_TRUE(area.contains(inkOf([&](QPainter &p) { paintWrapped(p, area, text); })));
}

TEST(CellText, aWordWiderThanTheCellIsCut)
{
    EXPECT_TRUE(isWrappedCut(u"HHHHHHHHHHHH"_s, {40, 100}, QFont()));
    const QRect area(20, 20, 40, 60);
    EXPECT_TRUE(
        area.contains(inkOf([&](QPainter &p) { paintWrapped(p, area, u"HHHHHHHHHHHH x"_s); })));
}

TEST(CellText, aCellWithoutRoomTakesAnyText)
{
    for (const QRect &area : {QRect(10, 10, 0, 0), QRect(10, 10, 3, 1), QRect(10, 10, -5, 20)}) {
        const QString endless(2'000'000, u'x');
        inkOf([&](QPainter &p) {
            paintLine(p, area, Qt::AlignLeft, endless);
            paintWrapped(p, area, endless);
        });
        EXPECT_TRUE(isLineCut(endless, area.width(), QFont()));
        EXPECT_TRUE(isWrappedCut(endless, area.size(), QFont()));
    }
}

TEST(CellText, lineEndsAndControlCharactersStayInTheCell)
{
    const QRect area(20, 20, 80, 40);
    const QString hostile = u"a\nb\r\tc\u202Ed\u0000e"_s;
    EXPECT_TRUE(area.contains(inkOf([&](QPainter &p) {
        paintLine(p, area, Qt::AlignLeft, hostile);
        paintWrapped(p, area, hostile);
    })));
}

} // namespace
} // namespace tollivar::ui
