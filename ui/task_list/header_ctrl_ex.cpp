#include "ui/task_list/header_ctrl_ex.h"

#include <QLinearGradient>
#include <QPainter>

namespace tollivar::ui {

using tasks::SortDirection;

namespace {

const QColor kTop(219, 219, 219);
const QColor kBottom(188, 188, 188);
const QColor kBottomLine(172, 168, 153);
const QColor kSeparator(150, 150, 150);
const QColor kSeparatorLight(209, 209, 209);
const QColor kArrow(82, 90, 102);
constexpr int kBottomLineHeight = 3;
constexpr int kTextIndent = 5;
constexpr int kHeaderHeight = 28;

void paintBack(QPainter &painter, const QRect &area, int height)
{
    QLinearGradient gradient(0, 0, 0, height);
    gradient.setColorAt(0, kTop);
    gradient.setColorAt(1, kBottom);
    painter.fillRect(area, gradient);
    painter.fillRect(
        QRect(area.left(), height - kBottomLineHeight, area.width(), kBottomLineHeight),
        kBottomLine);
}

/// Four lines, each two pixels longer than the one before.
void paintArrow(QPainter &painter, QPoint tip, SortDirection direction)
{
    constexpr int kLines = 4;
    for (int line = 0; line < kLines; ++line) {
        const int y =
            direction == SortDirection::Ascending ? tip.y() + line : tip.y() + kLines - 1 - line;
        painter.fillRect(QRect(tip.x() - line, y, 2 * line + 1, 1), kArrow);
    }
}

} // namespace

CHeaderCtrlEx::CHeaderCtrlEx(QWidget *parent) : QHeaderView(Qt::Horizontal, parent)
{
    setSectionsClickable(true);
    setHighlightSections(false);
    setSectionsMovable(false);
    setFixedHeight(kHeaderHeight);
    setMinimumSectionSize(kHeaderHeight);
    connect(this, &QHeaderView::sectionClicked, this, &CHeaderCtrlEx::chooseColumn);
}

void CHeaderCtrlEx::paintEvent(QPaintEvent *event)
{
    {
        // The part to the right of the last column looks like the columns.
        QPainter painter(viewport());
        paintBack(painter, viewport()->rect(), height());
    }
    QHeaderView::paintEvent(event);
}

void CHeaderCtrlEx::paintSection(QPainter *painter, const QRect &section, int column) const
{
    constexpr int kArrowRoom = 14;
    constexpr int kArrowTop = 10;
    painter->save();
    painter->setClipRect(section);
    paintBack(*painter, section, height());
    painter->fillRect(QRect(section.right() - 1, section.top(), 1, section.height()), kSeparator);
    painter->fillRect(QRect(section.right(), section.top(), 1, section.height()), kSeparatorLight);
    const bool isSorted = column == m_sortColumn && m_sortDirection != SortDirection::None;
    const QRect text =
        section.adjusted(kTextIndent, 0, -(isSorted ? kArrowRoom + 4 : 4), -kBottomLineHeight);
    const QString heading = model()->headerData(column, Qt::Horizontal).toString();
    painter->setFont(font());
    painter->setPen(Qt::black);
    painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      fontMetrics().elidedText(heading, Qt::ElideRight, text.width()));
    if (isSorted) {
        paintArrow(*painter, {section.right() - kArrowRoom + 3, kArrowTop}, m_sortDirection);
    }
    painter->restore();
}

void CHeaderCtrlEx::mouseDoubleClickEvent(QMouseEvent *event)
{
    // A fast second click sorts once more instead of being lost.
    mousePressEvent(event);
}

void CHeaderCtrlEx::chooseColumn(int column)
{
    if (column != m_sortColumn) {
        m_sortColumn = column;
        m_sortDirection = SortDirection::None;
    }
    m_sortDirection = m_sortDirection == SortDirection::Ascending ? SortDirection::Descending
                                                                  : SortDirection::Ascending;
    viewport()->update();
    Q_EMIT sortWanted(column, m_sortDirection);
}

} // namespace tollivar::ui
