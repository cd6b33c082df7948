#pragma once

#include "tasks/task_manager.h"
#include "ui/task_list/kept_selection.h"
#include "ui/task_list/row_painter.h"
#include "ui/task_list/row_text.h"

#include <QTableView>

#include <functional>
#include <optional>
#include <vector>

namespace tollivar::ui {

class CHeaderCtrlEx;
class EmptyHint;
class TaskListModel;

/// The table of tasks. It holds no task data: every paint of a row asks the task manager for the
/// row's present state. What it keeps is which tasks are selected, so that a selection outlives
/// sorting and removal.
///
/// Threads: the main thread.
/// Owns:    its header and model; the manager is borrowed until another, or none, is attached.
/// States:  call refreshRows() after each change of the manager's rows, redrawRow() after one of a
///          task's state. Clicks on the header sort by themselves.
class CListCtrlEx final : public QTableView {
    Q_OBJECT

public:
    /// What a conversion adds to a row; empty while there is none.
    struct Conversion {
        std::optional<int> percent{};
        QString failure{};
    };

    explicit CListCtrlEx(TextLookup texts, QWidget *parent = nullptr);

    /// Shows the manager's rows; without one the list is blank.
    void attach(tasks::TaskManager *manager);
    void setRetrySetting(int retries);
    void onConversion(std::function<Conversion(std::uint32_t taskId)> query);
    /// Headings and hint in the current language.
    void applyLanguage();

    /// The manager's rows are others than before. Scroll position and selection stay.
    void refreshRows();
    /// Costs nothing when the row is out of sight.
    void redrawRow(int row);

    /// In rising order.
    [[nodiscard]] std::vector<int> selectedRows() const;
    /// Selects these rows alone, given in rising order, and brings the last into view.
    void selectRows(const std::vector<int> &rows);

    /// The columns' widths from the left, once a person has chosen them; until then the columns
    /// share the list.
    [[nodiscard]] std::optional<std::array<int, kListColumnCount>> chosenWidths() const;
    /// Takes over widths that a person has chosen before.
    void setChosenWidths(const std::array<int, kListColumnCount> &widths);

    [[nodiscard]] int rowHeight() const { return m_rowHeight; }
    [[nodiscard]] RowText textOf(int row) const;
    /// What the row is drawn from.
    [[nodiscard]] RowSource sourceOf(int row) const;

Q_SIGNALS:
    void menuWanted(QPoint globalPosition);
    /// By a double click; windows keep Enter from their controls.
    void rowActivated(int row);
    void addWanted();
    /// Rows were selected or left, or are others than before.
    void selectionMayDiffer();
    /// A person has dragged a column.
    void widthsChosen();
    /// Space: start what rests, stop what runs.
    void toggleWanted();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    void setUpLook();
    void connectHeader();
    /// Says in an empty list why it is empty.
    void tellWhyEmpty();
    void measureRows();
    void shareWidth();
    [[nodiscard]] ColumnNeeds columnNeeds() const;
    void placeHint();
    void sortBy(int column, tasks::SortDirection direction);
    void showToolTip(QHelpEvent &event);
    void fillAround(QPainter &painter, const QRect &dirty, int rowsEnd) const;
    [[nodiscard]] std::array<QRect, kListColumnCount> cellsAt(int top) const;
    [[nodiscard]] RowLook lookOf(int row) const;

    TextLookup m_texts;
    tasks::TaskManager *m_manager = nullptr;
    std::function<Conversion(std::uint32_t)> m_conversion;
    TaskListModel *m_model = nullptr;
    CHeaderCtrlEx *m_header = nullptr;
    EmptyHint *m_hint = nullptr;
    RowPainter m_painter;
    KeptSelection m_kept;
    int m_rowHeight = 0;
    int m_retrySetting = 0;
    bool m_isRestoring = false;      ///< the selection changes only to stay with its tasks
    bool m_isSharing = false;        ///< the columns change with the list, not by a person
    bool m_hasPersonsWidths = false; ///< a person has dragged a column
};

} // namespace tollivar::ui
