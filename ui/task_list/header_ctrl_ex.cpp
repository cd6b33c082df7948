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
constexpr int kLowest = 28; ///< height with a small font
constexpr int kArrowLines = 4;
constexpr int kArrowSide = 7;
constexpr int kBesideArrow = 3;

void paintBack(QPainter &painter, const QRect &area, int height)
{
    QLinearGradient gradient(0, 0, 0, height);
    gradient.setColorAt(0, kTop);
    gradient.setColorAt(1, kBottom);
    if (area.isEmpty()) {
        return;
    }
    painter.fillRect(area, gradient);
    painter.fillRect(
        QRect(area.left(), height - kBottomLineHeight, area.width(), kBottomLineHeight),
        kBottomLine);
}

/// Lines that grow by a pixel on each side; `area` is as high as there are lines.
void paintArrow(QPainter &painter, const QRect &area, SortDirection direction)
{
    const bool pointsUp = direction == SortDirection::Ascending;
    for (int line = 0; line < kArrowLines; ++line) {
        const int y = pointsUp ? area.top() + line : area.bottom() - line;
        painter.fillRect(QRect(area.center().x() - line, y, 2 * line + 1, 1), kArrow);
    }
}

} // namespace

CHeaderCtrlEx::CHeaderCtrlEx(QWidget *parent) : QHeaderView(Qt::Horizontal, parent)
{
    setSectionsClickable(true);
    setHighlightSections(false);
    setSectionsMovable(false);
    setMinimumSectionSize(kLowest);
    connect(this, &QHeaderView::sectionClicked, this, &CHeaderCtrlEx::chooseColumn);
}

QSize CHeaderCtrlEx::sizeHint() const
{
    constexpr int kAroundText = 11;
    return {QHeaderView::sizeHint().width(),
            std::max(kLowest, fontMetrics().height() + kAroundText)};
}

int CHeaderCtrlEx::headingWidth(int column) const
{
    const QString heading = model()->headerData(column, Qt::Horizontal).toString();
    return kTextIndent + fontMetrics().horizontalAdvance(heading) + 2 * kBesideArrow + kArrowSide +
           1;
}

void CHeaderCtrlEx::showOrder(tasks::TaskOrder order)
{
    // The column of the latest click stays known, so that the next click on it turns the order.
    if (order.direction != SortDirection::None) {
        m_sortColumn = static_cast<int>(order.column);
    }
    m_sortDirection = order.direction;
    viewport()->update();
}

void CHeaderCtrlEx::paintEvent(QPaintEvent *event)
{
    QHeaderView::paintEvent(event);
    // The part to the right of the last column looks like the columns.
    QPainter painter(viewport());
    const int end = length() - offset();
    paintBack(painter, viewport()->rect().adjusted(end, 0, 0, 0), height());
}

void CHeaderCtrlEx::paintSection(QPainter *painter, const QRect &section, int column) const
{
    painter->save();
    painter->setClipRect(section);
    paintBack(*painter, section, height());
    painter->fillRect(QRect(section.right() - 1, section.top(), 1, section.height()), kSeparator);
    painter->fillRect(QRect(section.right(), section.top(), 1, section.height()), kSeparatorLight);
    QRect text = section.adjusted(kTextIndent, 0, -kBesideArrow, -kBottomLineHeight);
    if (column == m_sortColumn && m_sortDirection != SortDirection::None) {
        const QRect arrow(text.right() - kArrowSide, text.center().y() - kArrowLines / 2 + 1,
                          kArrowSide, kArrowLines);
        paintArrow(*painter, arrow, m_sortDirection);
        text.setRight(arrow.left() - kBesideArrow);
    }
    const QString heading = model()->headerData(column, Qt::Horizontal).toString();
    painter->setFont(font());
    painter->setPen(Qt::black);
    painter->drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      fontMetrics().elidedText(heading, Qt::ElideRight, std::max(0, text.width())));
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
