#pragma once

#include "tasks/row_order.h"

#include <QHeaderView>

namespace tollivar::ui {

/// The header of the task list: draws itself and knows by which column the rows are sorted.
///
/// Threads: the main thread.
/// States:  a click chooses its column and tells; the arrow stands until showOrder() says otherwise.
class CHeaderCtrlEx final : public QHeaderView {
    Q_OBJECT

public:
    explicit CHeaderCtrlEx(QWidget *parent);

    /// -1 before the first click.
    [[nodiscard]] int sortColumn() const { return m_sortColumn; }
    [[nodiscard]] tasks::SortDirection sortDirection() const { return m_sortDirection; }
    /// Shows how the rows are sorted now; None takes the arrow away.
    void showOrder(tasks::TaskOrder order);

    /// How wide a column is that shows its whole heading, with an arrow too.
    [[nodiscard]] int headingWidth(int column) const;

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    /// A click chose this column and direction.
    void sortWanted(int column, tollivar::tasks::SortDirection direction);

protected:
    void paintEvent(QPaintEvent *event) override;
    void paintSection(QPainter *painter, const QRect &section, int column) const override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    void chooseColumn(int column);

    int m_sortColumn = -1;
    tasks::SortDirection m_sortDirection = tasks::SortDirection::None;
};

} // namespace tollivar::ui
