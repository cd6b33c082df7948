#include "ui/task_list/kept_selection.h"

#include "tasks/task_manager.h"
#include "ui/task_list/list_columns.h"

#include <QItemSelectionModel>

namespace tollivar::ui {

namespace {

std::optional<std::uint32_t> idAt(const tasks::TaskManager *manager, int row)
{
    const auto *worker = manager == nullptr ? nullptr : manager->workerAt(row);
    return worker == nullptr ? std::nullopt : std::optional(worker->taskId());
}

} // namespace

std::vector<int> selectedRowsOf(const QItemSelectionModel &selection)
{
    std::vector<int> rows;
    const auto ranges = selection.selection();
    for (const auto &range : ranges) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(row);
        }
    }
    std::ranges::sort(rows);
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void selectRowsOf(QItemSelectionModel &selection, const std::vector<int> &rows)
{
    const QAbstractItemModel &model = *selection.model();
    QItemSelection ranges;
    for (std::size_t begin = 0; begin < rows.size();) {
        std::size_t end = begin + 1;
        while (end < rows.size() && rows[end] == rows[end - 1] + 1) {
            ++end;
        }
        ranges.append(QItemSelectionRange(
            model.index(rows[begin], 0),
            model.index(rows[end - 1], static_cast<int>(kListColumnCount) - 1)));
        begin = end;
    }
    // Replacing one selection by another compares each range with each: with thousands of them
    // that takes seconds.
    selection.clearSelection();
    selection.select(ranges, QItemSelectionModel::Select);
}

void KeptSelection::read(const QItemSelectionModel &selection, const tasks::TaskManager *manager)
{
    m_selected.clear();
    for (const int row : selectedRowsOf(selection)) {
        if (const auto id = idAt(manager, row)) {
            m_selected.push_back(*id);
        }
    }
    m_current = idAt(manager, selection.currentIndex().row());
}

void KeptSelection::apply(QItemSelectionModel &selection, const tasks::TaskManager *manager) const
{
    std::vector<int> rows;
    rows.reserve(m_selected.size());
    const int last = selection.model()->rowCount() - 1;
    const auto rowOf = [manager, last](std::uint32_t id) {
        const int row = manager == nullptr ? -1 : manager->rowOf(id);
        return row <= last ? row : -1;
    };
    for (const std::uint32_t id : m_selected) {
        if (const int row = rowOf(id); row >= 0) {
            rows.push_back(row);
        }
    }
    std::ranges::sort(rows);
    selectRowsOf(selection, rows);
    if (const int row = m_current ? rowOf(*m_current) : -1; row >= 0) {
        selection.setCurrentIndex(selection.model()->index(row, static_cast<int>(ListColumn::Name)),
                                  QItemSelectionModel::NoUpdate);
    }
}

void KeptSelection::clear()
{
    m_selected.clear();
    m_current.reset();
}

} // namespace tollivar::ui
