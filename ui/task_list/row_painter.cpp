#include "ui/task_list/row_painter.h"

#include "ui/controls/mem_dc.h"
#include "ui/task_list/cell_text.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

const QColor kFocusedBack(61, 128, 223);
const QColor kUnfocusedBack(236, 233, 216);
const QColor kGrid(217, 217, 217);
const QColor kBadgeFrame(62, 62, 62);
const QColor kBar(45, 115, 196);
const QColor kBarBack(211, 220, 231);
const QColor kBarBackSelected(255, 255, 255, 90);

constexpr int kIconSide = 32;
/// The name cell's texts begin this far from its left edge, behind the icon.
constexpr int kNameIndent = 40;
constexpr int kBarHeight = 6;
constexpr int kBarMargin = 12;

struct BadgeColors {
    QColor top;
    QColor bottom;
};

BadgeColors badgeColors(const QString &type)
{
    if (type == u"FLV"_s) {
        return {QColor(241, 151, 133), QColor(156, 59, 28)};
    }
    if (type == u"MP4"_s || type == u"MPG"_s || type == u"MPEG"_s) {
        return {QColor(47, 120, 220), QColor(34, 88, 160)};
    }
    if (type == u"SWF"_s) {
        return {QColor(137, 135, 191), QColor(76, 74, 127)};
    }
    return {QColor(224, 162, 106), QColor(193, 119, 38)};
}

QColor backOf(RowLook look)
{
    switch (look) {
    case RowLook::SelectedWithFocus:
        return kFocusedBack;
    case RowLook::SelectedWithoutFocus:
        return kUnfocusedBack;
    case RowLook::Plain:
    case RowLook::PlainCurrent:
        break;
    }
    return kListBack;
}

QRect upperHalf(const QRect &cell)
{
    return {cell.left(), cell.top(), cell.width(), cell.height() / 2};
}

QRect lowerHalf(const QRect &cell)
{
    return cell.adjusted(0, cell.height() / 2, 0, 0);
}

void paintGrid(QPainter &painter, const QRect &cell)
{
    painter.fillRect(QRect(cell.right(), cell.top(), 1, cell.height()), kGrid);
    painter.fillRect(QRect(cell.left(), cell.bottom(), cell.width(), 1), kGrid);
}

QRect nameArea(const QRect &cell)
{
    return cell.adjusted(kNameIndent - kTextMargin, 0, 0, 0);
}

/// A frame inside the rectangle. Filled, because a pen's line falls between the pixels of a screen
/// with another ratio than one.
void paintFrame(QPainter &painter, const QRect &outside, const QColor &color)
{
    painter.fillRect(QRect(outside.left(), outside.top(), outside.width(), 1), color);
    painter.fillRect(QRect(outside.left(), outside.bottom(), outside.width(), 1), color);
    painter.fillRect(QRect(outside.left(), outside.top(), 1, outside.height()), color);
    painter.fillRect(QRect(outside.right(), outside.top(), 1, outside.height()), color);
}

/// The list's font made small enough for the badge, and narrow enough for its text.
QFont badgeFont(QFont font, const QString &type, int width)
{
    constexpr int kPixels = 8;
    constexpr int kNarrowest = 75;
    constexpr int kUnstretched = 100;
    font.setPixelSize(kPixels);
    font.setWeight(QFont::DemiBold);
    const int wanted = std::max(1, QFontMetrics(font).horizontalAdvance(type));
    if (wanted > width) {
        font.setStretch(std::max(kNarrowest, kUnstretched * width / wanted));
    }
    return font;
}

/// Puts capital letters into the middle by what is drawn of them: at so small a size the font's own
/// measures are rounded by as much as is free around them.
double badgeBaseline(const QPainter &painter, const QRect &badge)
{
    const double ratio = painter.device()->devicePixelRatioF();
    QFont drawn = painter.font();
    drawn.setPixelSize(qRound(drawn.pixelSize() * ratio));
    const QRect capital = QFontMetrics(drawn).tightBoundingRect(u"E"_s);
    const int above = qRound((badge.height() * ratio - capital.height()) / 2);
    return badge.top() + (above - capital.top()) / ratio;
}

void paintBadge(QPainter &painter, const QRect &cell, const QString &type)
{
    const QRect badge(cell.left() + 5, cell.top() + 2, 25, 11);
    const auto [top, bottom] = badgeColors(type);
    QLinearGradient gradient(0, badge.top(), 0, badge.top() + badge.height());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    painter.fillRect(badge, gradient);
    paintFrame(painter, badge, kBadgeFrame);
    const QRect inner = badge.adjusted(2, 0, -2, 0);
    painter.save();
    painter.setClipRect(badge);
    painter.setFont(badgeFont(painter.font(), type, inner.width()));
    painter.setPen(Qt::white);
    const QFontMetricsF metrics(painter.font());
    const QString text = metrics.elidedText(type, Qt::ElideRight, inner.width() + 1);
    const double left = inner.left() + (inner.width() - metrics.horizontalAdvance(text)) / 2;
    painter.drawText(QPointF(left, badgeBaseline(painter, badge)), text);
    painter.restore();
}

/// `reach` is 0 to 10,000.
void paintBar(QPainter &painter, const QRect &area, int reach, RowLook look)
{
    constexpr double kWhole = 10'000;
    const QRectF track(area.left() + kBarMargin, area.top() + (area.height() - kBarHeight) / 2.0,
                       std::max(0, area.width() - 2 * kBarMargin), kBarHeight);
    const bool isDark = look == RowLook::SelectedWithFocus;
    const double round = kBarHeight / 2.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath whole;
    whole.addRoundedRect(track, round, round);
    painter.fillPath(whole, isDark ? kBarBackSelected : kBarBack);
    // What was reached fills the track from the left; cut by it, a small part is round as well.
    QPainterPath reached;
    reached.addRoundedRect(track.adjusted(0, 0, track.width() * (reach / kWhole - 1), 0), round,
                           round);
    painter.fillPath(reached.intersected(whole), isDark ? QColor(Qt::white) : kBar);
    painter.restore();
}

void paintStatus(QPainter &painter, const QRect &cell, const RowText &text, RowLook look)
{
    paintLine(painter, upperHalf(cell), Qt::AlignHCenter, text.status);
    paintLine(painter, lowerHalf(cell), Qt::AlignHCenter, text.detail);
    if (text.bar) {
        paintBar(painter, lowerHalf(cell), *text.bar, look);
    }
}

} // namespace

void RowPainter::paint(QPainter &target, const QRect &row,
                       const std::array<QRect, kListColumnCount> &cells, const RowText &text,
                       RowLook look, const QFont &font)
{
    CMemDC surface(target, row, m_surface);
    QPainter &painter = surface.painter();
    painter.setFont(font);
    painter.fillRect(row, Qt::white);
    painter.fillRect(row, backOf(look));
    painter.setPen(look == RowLook::SelectedWithFocus ? Qt::white : Qt::black);
    const auto cell = [&cells](ListColumn column) -> const QRect & {
        return cells[static_cast<std::size_t>(column)];
    };
    for (const QRect &each : cells) {
        paintGrid(painter, each);
    }
    paintLine(painter, cell(ListColumn::Number), Qt::AlignLeft, text.number);
    paintName(painter, cell(ListColumn::Name), text);
    paintStatus(painter, cell(ListColumn::Status), text, look);
    paintLine(painter, upperHalf(cell(ListColumn::Speed)), Qt::AlignHCenter, text.speed);
    paintLine(painter, lowerHalf(cell(ListColumn::Speed)), Qt::AlignHCenter, text.timeLeft);
    paintWrapped(painter, cell(ListColumn::Target), text.target);
    paintWrapped(painter, cell(ListColumn::Mode), text.mode);
    if (look == RowLook::PlainCurrent) {
        paintFrame(painter, row, kFocusedBack);
    }
}

void RowPainter::paintName(QPainter &painter, const QRect &cell, const RowText &text) const
{
    painter.save();
    painter.setClipRect(cell.adjusted(0, 0, -1, -1));
    m_icon.paint(&painter, QRect(cell.topLeft(), QSize(kIconSide, kIconSide)));
    paintBadge(painter, cell, text.badge);
    painter.restore();
    const QRect texts = nameArea(cell);
    // The ends of names tell the parts of a series apart.
    paintLine(painter, upperHalf(texts), Qt::AlignLeft, text.name, Qt::ElideMiddle);
    paintLine(painter, lowerHalf(texts), Qt::AlignLeft, text.size);
}

bool RowPainter::isCut(ListColumn column, const QSize &cell, const RowText &text, const QFont &font)
{
    const auto anyCut = [&font](int width, const QString &upper, const QString &lower) {
        return isLineCut(upper, width, font) || isLineCut(lower, width, font);
    };
    switch (column) {
    case ListColumn::Number:
        return isLineCut(text.number, cell.width(), font);
    case ListColumn::Name:
        return anyCut(nameArea(QRect(QPoint(0, 0), cell)).width(), text.name, text.size);
    case ListColumn::Status:
        return anyCut(cell.width(), text.status, text.detail);
    case ListColumn::Speed:
        return anyCut(cell.width(), text.speed, text.timeLeft);
    case ListColumn::Target:
        return isWrappedCut(text.target, cell, font);
    case ListColumn::Mode:
        return isWrappedCut(text.mode, cell, font);
    }
    return false;
}

} // namespace tollivar::ui
