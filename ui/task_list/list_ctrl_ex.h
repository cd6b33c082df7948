#pragma once

#include "tasks/row_order.h"
#include "tasks/task_manager.h"
#include "ui/task_list/row_painter.h"
#include "ui/task_list/row_text.h"

#include <QTableView>

#include <functional>
#include <optional>
#include <vector>

class QToolButton;

namespace tollivar::ui {

class CHeaderCtrlEx;
class TaskListModel;

/// The table of tasks. It holds no task data: every paint of a row asks the task manager for the
/// row's present state. What it keeps is which tasks are selected, by their ids, so that a selection
/// outlives sorting, removal and a change of the filter.
///
/// Threads: the main thread.
/// Owns:    its header and model; the manager is borrowed until another, or none, is attached.
class CListCtrlEx final : public QTableView {
    Q_OBJECT

public:
    /// What a conversion adds to a row; empty while there is none.
    struct Conversion {
        std::optional<int> percent{};
        QString failure{};
    };

    CListCtrlEx(TextLookup texts, QWidget *parent = nullptr);

    /// Shows the manager's rows; without one the list is blank.
    void attach(tasks::TaskManager *manager);
    void setRetrySetting(int retries);
    void onConversion(std::function<Conversion(std::uint32_t taskId)> query);
    /// Headings and hint in the current language.
    void applyLanguage();

    /// The manager's rows are others than before. Scroll position and selection stay.
    void refreshRows();
    void redrawRow(int row);

    /// In rising order.
    [[nodiscard]] std::vector<int> selectedRows() const;
    /// Selects these rows alone, and brings them into view.
    void selectRows(const std::vector<int> &rows);

    [[nodiscard]] int rowHeight() const { return m_rowHeight; }
    [[nodiscard]] RowText textOf(int row) const;

Q_SIGNALS:
    void menuWanted(QPoint globalPosition);
    void activated(int row);
    void addWanted();
    void removeWanted();
    /// Space: start what rests, stop what runs.
    void toggleWanted();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;

private:
    void setUpLook();
    void measureRows();
    void shareWidth();
    void placeHint();
    void selectIds(const std::vector<std::uint32_t> &ids);
    [[nodiscard]] RowSource sourceOf(int row) const;
    [[nodiscard]] RowLook lookOf(int row) const;

    TextLookup m_texts;
    tasks::TaskManager *m_manager = nullptr;
    std::function<Conversion(std::uint32_t)> m_conversion;
    TaskListModel *m_model = nullptr;
    CHeaderCtrlEx *m_header = nullptr;
    QToolButton *m_hintButton = nullptr;
    RowPainter m_painter;
    std::vector<std::uint32_t> m_selectedIds;
    int m_rowHeight = 0;
    int m_retrySetting = 0;
    bool m_hasPersonsWidths = false; ///< a person has dragged a column
};

} // namespace tollivar::ui
