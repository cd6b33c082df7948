#include "tests/ui/task_list/list_texts.h"
#include "ui/task_list/row_painter.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace tollivar::ui {
namespace {

using namespace Qt::StringLiterals;
using Cells = std::array<QRect, kListColumnCount>;

constexpr int kHeight = 45;
const QColor kBack(241, 245, 250);
const QColor kFocused(61, 128, 223);
const QColor kUnfocused(236, 233, 216);
const QColor kGrid(217, 217, 217);

Cells cells()
{
    constexpr std::array kWidths = {40, 180, 150, 70, 60, 60};
    Cells cells;
    int left = 0;
    for (std::size_t i = 0; i < kWidths.size(); ++i) {
        cells[i] = QRect(left, 0, kWidths[i], kHeight);
        left += kWidths[i];
    }
    return cells;
}

const QRect kRow(0, 0, 560, kHeight);

/// A row on a screen of a ratio; read in logical pixels.
class Picture {
public:
    Picture(const RowText &text, RowLook look, qreal ratio, const QIcon &icon = {})
        : m_ratio(ratio)
        , m_image((QSizeF(kRow.size()) * ratio).toSize(), QImage::Format_RGB32)
    {
        m_image.setDevicePixelRatio(ratio);
        m_image.fill(Qt::magenta);
        QPainter target(&m_image);
        RowPainter(icon).paint(target, kRow, cells(), text, look, QFont());
    }

    /// Every screen pixel of a logical one has the same color in what is drawn by filling.
    [[nodiscard]] QColor at(int x, int y) const
    {
        const QPoint first(qRound(x * m_ratio), qRound(y * m_ratio));
        const QPoint last(qRound((x + 1) * m_ratio) - 1, qRound((y + 1) * m_ratio) - 1);
        EXPECT_EQ(m_image.pixelColor(first), m_image.pixelColor(last)) << x << ' ' << y;
        return m_image.pixelColor(first);
    }

    /// The color in the middle of the logical pixel.
    [[nodiscard]] QColor middle(int x, int y) const
    {
        return m_image.pixelColor(int((x + 0.5) * m_ratio), int((y + 0.5) * m_ratio));
    }

    /// Whether something there is nearly of that color: thin strokes are blended with their ground.
    [[nodiscard]] bool has(const QRect &area, const QColor &color) const
    {
        constexpr int kNearly = 60;
        const auto isNear = [](int left, int right) { return std::abs(left - right) < kNearly; };
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                const QColor seen = middle(x, y);
                if (isNear(seen.red(), color.red()) && isNear(seen.green(), color.green()) &&
                    isNear(seen.blue(), color.blue())) {
                    return true;
                }
            }
        }
        return false;
    }

private:
    qreal m_ratio;
    QImage m_image;
};

class RowPainting : public ::testing::TestWithParam<qreal> {
protected:
    [[nodiscard]] static Picture picture(const RowText &text, RowLook look = RowLook::Plain)
    {
        return {text, look, GetParam()};
    }
};

INSTANTIATE_TEST_SUITE_P(At, RowPainting, ::testing::Values(1.0, 2.0),
                         [](const auto &ratio) { return ratio.param == 1.0 ? "OneX" : "TwoX"; });

TEST_P(RowPainting, fillsTheRowByItsLook)
{
    EXPECT_EQ(picture({}).at(100, 40), kBack);
    EXPECT_EQ(picture({}, RowLook::SelectedWithFocus).at(100, 40), kFocused);
    EXPECT_EQ(picture({}, RowLook::SelectedWithoutFocus).at(100, 40), kUnfocused);
    EXPECT_EQ(picture({}, RowLook::PlainCurrent).at(100, 40), kBack);
}

TEST_P(RowPainting, writesWhiteOnlyOnTheFocusedSelection)
{
    const RowText text{.name = u"HHHHHHHH"_s};
    const QRect name(80, 2, 130, 20);
    EXPECT_TRUE(picture(text).has(name, Qt::black));
    EXPECT_TRUE(picture(text, RowLook::SelectedWithoutFocus).has(name, Qt::black));
    const Picture focused = picture(text, RowLook::SelectedWithFocus);
    EXPECT_TRUE(focused.has(name, Qt::white));
    EXPECT_FALSE(focused.has(name, Qt::black));
}

TEST_P(RowPainting, drawsTheGridAtTheRightAndTheBottomOfEachCell)
{
    for (const RowLook look : {RowLook::Plain, RowLook::SelectedWithFocus}) {
        const Picture row = picture({}, look);
        const QColor back = look == RowLook::Plain ? kBack : kFocused;
        for (const QRect &cell : cells()) {
            EXPECT_EQ(row.at(cell.right(), 20), kGrid);
            EXPECT_EQ(row.at(cell.right() - 1, 20), back);
            EXPECT_EQ(row.at(cell.left() + 2, kHeight - 1), kGrid);
            EXPECT_EQ(row.at(cell.left() + 2, kHeight - 2), back);
        }
    }
}

TEST_P(RowPainting, framesTheRowThatTheKeysActFrom)
{
    const Picture row = picture({}, RowLook::PlainCurrent);
    EXPECT_EQ(row.at(300, 0), kFocused);
    EXPECT_EQ(row.at(300, kHeight - 1), kFocused);
    EXPECT_EQ(row.at(0, 20), kFocused);
    EXPECT_EQ(row.at(kRow.right(), 20), kFocused);
    EXPECT_EQ(row.at(300, 1), kBack);
}

struct BadgeCase {
    const char *type;
    QColor top;
    QColor bottom;
};

/// The badge's gradient runs over 11 pixels and is covered by the frame at both ends.
void expectBadge(const Picture &row, const BadgeCase &badge)
{
    const auto blend = [&badge](double part) {
        const auto mixed = [part](int from, int to) { return from + (to - from) * part; };
        return std::array{mixed(badge.top.red(), badge.bottom.red()),
                          mixed(badge.top.green(), badge.bottom.green()),
                          mixed(badge.top.blue(), badge.bottom.blue())};
    };
    for (const int line : {1, 9}) {
        const QColor seen = row.middle(46, 2 + line);
        const auto wanted = blend((line + 0.5) / 11);
        EXPECT_NEAR(seen.red(), wanted[0], 8) << badge.type << line;
        EXPECT_NEAR(seen.green(), wanted[1], 8) << badge.type << line;
        EXPECT_NEAR(seen.blue(), wanted[2], 8) << badge.type << line;
    }
}

TEST_P(RowPainting, coloursTheBadgeByItsType)
{
    const QColor orangeTop(224, 162, 106);
    const QColor orangeBottom(193, 119, 38);
    const BadgeCase cases[] = {
        {"FLV", {241, 151, 133}, {156, 59, 28}}, {"MP4", {47, 120, 220}, {34, 88, 160}},
        {"MPG", {47, 120, 220}, {34, 88, 160}},  {"MPEG", {47, 120, 220}, {34, 88, 160}},
        {"SWF", {137, 135, 191}, {76, 74, 127}}, {"3GP", orangeTop, orangeBottom},
        {"flv", orangeTop, orangeBottom},        {"", orangeTop, orangeBottom},
    };
    for (const BadgeCase &badge : cases) {
        expectBadge(picture({.badge = QString::fromLatin1(badge.type)}), badge);
    }
}

TEST_P(RowPainting, framesTheBadgeAtItsPlace)
{
    const QColor frame(62, 62, 62);
    const Picture row = picture({.badge = u"MP4"_s});
    // The name cell begins at 40: the badge covers 45 to 69 and 2 to 12.
    for (const QPoint corner : {QPoint(45, 2), QPoint(69, 2), QPoint(45, 12), QPoint(69, 12)}) {
        EXPECT_EQ(row.at(corner.x(), corner.y()), frame);
    }
    EXPECT_EQ(row.at(57, 2), frame);
    EXPECT_EQ(row.at(57, 12), frame);
    EXPECT_EQ(row.at(45, 7), frame);
    EXPECT_EQ(row.at(69, 7), frame);
    EXPECT_EQ(row.at(44, 7), kBack);
    EXPECT_EQ(row.at(70, 7), kBack);
    EXPECT_EQ(row.at(57, 1), kBack);
    EXPECT_EQ(row.at(57, 13), kBack);
}

TEST_P(RowPainting, putsTheBadgesTextIntoItsMiddle)
{
    const Picture row = picture({.badge = u"EEE"_s});
    const auto isText = [&row](int y) { return row.has(QRect(48, y, 19, 1), Qt::white); };
    int first = 3;
    int last = 11;
    while (first < last && !isText(first))
        ++first;
    while (last > first && !isText(last))
        --last;
    EXPECT_GT(last, first);
    EXPECT_NEAR(first - 2, 12 - last, 1);
    EXPECT_GT(first, 3);
}

TEST_P(RowPainting, keepsAnyTypeInsideTheBadge)
{
    const Picture row = picture({.badge = u"WWWWWWWWWWWWWWWW"_s});
    EXPECT_EQ(row.at(44, 7), kBack);
    EXPECT_EQ(row.at(70, 7), kBack);
    EXPECT_EQ(row.at(45, 7), QColor(62, 62, 62));
}

TEST_P(RowPainting, drawsTheIconAtTheCornerOfTheNameCell)
{
    QPixmap red(64, 64);
    red.fill(Qt::red);
    const Picture row({}, RowLook::Plain, GetParam(), QIcon(red));
    EXPECT_EQ(row.at(40, 0), QColor(Qt::red));
    EXPECT_EQ(row.at(71, 31), QColor(Qt::red));
    EXPECT_EQ(row.at(72, 20), kBack);
    EXPECT_EQ(row.at(60, 32), kBack);
    EXPECT_EQ(row.at(39, 20), kGrid);
}

TEST_P(RowPainting, writesInTheHalvesOfACell)
{
    const QRect upper(80, 2, 130, kHeight / 2 - 3);
    const QRect lower(80, kHeight / 2 + 1, 130, kHeight / 2 - 4);
    const Picture name = picture({.name = u"HHHH"_s});
    EXPECT_TRUE(name.has(upper, Qt::black));
    EXPECT_FALSE(name.has(lower, Qt::black));
    const Picture size = picture({.size = u"HHHH"_s});
    EXPECT_FALSE(size.has(upper, Qt::black));
    EXPECT_TRUE(size.has(lower, Qt::black));
    // Nothing is written to the left of the text area.
    EXPECT_FALSE(name.has(QRect(72, 14, 8, 20), Qt::black));
}

TEST_P(RowPainting, fillsTheBarByItsPart)
{
    const QColor bar(45, 115, 196);
    const int y = kHeight / 2 + kHeight / 4;
    const QRect status = cells()[2];
    const auto at = [&](int bars, double part, RowLook look = RowLook::Plain) {
        const int left = status.left() + 12;
        const int width = status.width() - 24;
        return picture({.bar = bars}, look).middle(left + int(width * part), y);
    };
    EXPECT_EQ(at(5'000, 0.1), bar);
    EXPECT_EQ(at(5'000, 0.45), bar);
    EXPECT_NE(at(5'000, 0.55), bar);
    EXPECT_NE(at(5'000, 0.55), kBack);
    EXPECT_NE(at(0, 0.1), bar);
    EXPECT_EQ(at(10'000, 0.9), bar);
    EXPECT_EQ(at(5'000, 0.1, RowLook::SelectedWithFocus), QColor(Qt::white));
    EXPECT_EQ(picture({}).middle(status.center().x(), y), kBack);
}

TEST_P(RowPainting, leavesOtherPixelsOfTheScreenAlone)
{
    const qreal ratio = GetParam();
    QImage image((QSizeF(600, 100) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::magenta);
    QPainter target(&image);
    Cells moved = cells();
    for (QRect &cell : moved) {
        cell.translate(20, 30);
    }
    RowPainter({}).paint(target, kRow.translated(20, 30), moved, {}, RowLook::Plain, QFont());
    const auto at = [&](int x, int y) { return image.pixelColor(int(x * ratio), int(y * ratio)); };
    EXPECT_EQ(at(20, 30), kBack);
    EXPECT_EQ(at(19, 40), QColor(Qt::magenta));
    EXPECT_EQ(at(30, 29), QColor(Qt::magenta));
    EXPECT_EQ(at(580, 40), QColor(Qt::magenta));
    EXPECT_EQ(at(30, 75), QColor(Qt::magenta));
}

TEST(RowPainter, knowsWhichCellsAreCut)
{
    const QFont font;
    const auto isCut = [&font](ListColumn column, int width, const RowText &text) {
        return RowPainter::isCut(column, {width, kHeight}, text, font);
    };
    const QString text(20, u'W');
    EXPECT_TRUE(isCut(ListColumn::Name, 180, {.name = text}));
    EXPECT_TRUE(isCut(ListColumn::Name, 180, {.size = text}));
    EXPECT_FALSE(isCut(ListColumn::Name, 180, {.name = u"x"_s}));
    EXPECT_TRUE(isCut(ListColumn::Status, 150, {.detail = text}));
    EXPECT_TRUE(isCut(ListColumn::Speed, 70, {.speed = text}));
    EXPECT_TRUE(isCut(ListColumn::Number, 40, {.number = text}));
    EXPECT_TRUE(isCut(ListColumn::Target, 60, {.target = text}));
    EXPECT_FALSE(isCut(ListColumn::Target, 60, {.target = u".MP4"_s}));
    EXPECT_TRUE(isCut(ListColumn::Mode, 60, {.mode = text}));
    EXPECT_FALSE(isCut(ListColumn::Mode, 60, {}));
    // The icon's room is not the name's.
    const int width = QFontMetrics(font).horizontalAdvance(text) + 20;
    EXPECT_TRUE(isCut(ListColumn::Name, width, {.name = text}));
    EXPECT_FALSE(isCut(ListColumn::Name, width + 40, {.name = text}));
}

} // namespace
} // namespace tollivar::ui
