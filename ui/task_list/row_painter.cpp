#include "ui/task_list/row_painter.h"

#include "ui/controls/mem_dc.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QPainter>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

const QColor kPlainBack(241, 245, 250);
const QColor kFocusedBack(61, 128, 223);
const QColor kUnfocusedBack(236, 233, 216);
const QColor kGrid(217, 217, 217);
const QColor kBadgeFrame(62, 62, 62);
const QColor kBar(45, 115, 196);
const QColor kBarBack(211, 220, 231);

constexpr int kIconSide = 32;
/// Texts of the name cell begin this far from its left edge, behind the icon.
constexpr int kNameIndent = 40;
constexpr int kNumberIndent = 5;
/// Free on both sides of a text in the other cells.
constexpr int kTextMargin = 4;
constexpr int kBarHeight = 6;
constexpr int kBarMargin = 14;

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
        break;
    }
    return kPlainBack;
}

QRect upperHalf(const QRect &cell)
{
    return {cell.left(), cell.top(), cell.width(), cell.height() / 2};
}

QRect lowerHalf(const QRect &cell)
{
    return cell.adjusted(0, cell.height() / 2, 0, 0);
}

void paintLine(QPainter &painter, const QRect &where, Qt::Alignment alignment, const QString &text)
{
    const QRect inner = where.adjusted(kTextMargin, 0, -kTextMargin, 0);
    const QString fitting =
        painter.fontMetrics().elidedText(text, Qt::ElideRight, std::max(0, inner.width()));
    painter.drawText(inner, static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextSingleLine,
                     fitting);
}

void paintWrapped(QPainter &painter, const QRect &cell, const QString &text)
{
    const QRect inner = cell.adjusted(kTextMargin, 0, -kTextMargin, 0);
    painter.save();
    painter.setClipRect(inner);
    painter.drawText(inner, Qt::AlignCenter | Qt::TextWordWrap, text);
    painter.restore();
}

void paintGrid(QPainter &painter, const QRect &cell)
{
    painter.fillRect(QRect(cell.right(), cell.top(), 1, cell.height()), kGrid);
    painter.fillRect(QRect(cell.left(), cell.bottom(), cell.width(), 1), kGrid);
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
    paintLine(painter, cell(ListColumn::Number).adjusted(kNumberIndent - kTextMargin, 0, 0, 0),
              Qt::AlignLeft, text.number);
    paintName(painter, cell(ListColumn::Name), text);
    paintStatus(painter, cell(ListColumn::Status), text, look);
    paintLine(painter, upperHalf(cell(ListColumn::Speed)), Qt::AlignHCenter, text.speed);
    paintLine(painter, lowerHalf(cell(ListColumn::Speed)), Qt::AlignHCenter, text.timeLeft);
    paintWrapped(painter, cell(ListColumn::Target), text.target);
    paintWrapped(painter, cell(ListColumn::Mode), text.mode);
}

void RowPainter::paintName(QPainter &painter, const QRect &cell, const RowText &text)
{
    painter.save();
    painter.setClipRect(cell);
    m_icon.paint(&painter, QRect(cell.topLeft(), QSize(kIconSide, kIconSide)));
    paintBadge(painter, cell, text.badge);
    painter.restore();
    const QRect texts = cell.adjusted(kNameIndent - kTextMargin, 0, 0, 0);
    paintLine(painter, upperHalf(texts), Qt::AlignLeft, text.name);
    paintLine(painter, lowerHalf(texts), Qt::AlignLeft, text.size);
}

void RowPainter::paintBadge(QPainter &painter, const QRect &cell, const QString &type)
{
    constexpr int kBadgeFont = 8; // pixels
    const QRect badge(cell.left() + 5, cell.top() + 2, 25, 11);
    const auto [top, bottom] = badgeColors(type);
    QLinearGradient gradient(badge.topLeft(), badge.bottomLeft());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    painter.fillRect(badge, gradient);
    painter.save();
    painter.setPen(kBadgeFrame);
    painter.drawRect(QRectF(badge).adjusted(0.5, 0.5, -0.5, -0.5));
    QFont font = painter.font();
    font.setPixelSize(kBadgeFont);
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(badge, Qt::AlignCenter | Qt::TextSingleLine, type);
    painter.restore();
}

void RowPainter::paintStatus(QPainter &painter, const QRect &cell, const RowText &text,
                             RowLook look)
{
    paintLine(painter, upperHalf(cell), Qt::AlignHCenter, text.status);
    const QRect below = lowerHalf(cell);
    paintLine(painter, below, Qt::AlignHCenter, text.detail);
    if (!text.bar) {
        return;
    }
    constexpr int kWhole = 10'000;
    QRectF bar(below.left() + kBarMargin, below.top() + 4, below.width() - 2 * kBarMargin,
               kBarHeight);
    const bool isDark = look == RowLook::SelectedWithFocus;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isDark ? QColor(255, 255, 255, 90) : kBarBack);
    painter.drawRoundedRect(bar, kBarHeight / 2.0, kBarHeight / 2.0);
    bar.setWidth(bar.width() * *text.bar / kWhole);
    painter.setBrush(isDark ? QColor(Qt::white) : kBar);
    painter.drawRoundedRect(bar, kBarHeight / 2.0, kBarHeight / 2.0);
    painter.restore();
}

} // namespace tollivar::ui
