#pragma once

#include "ui/task_list/row_text.h"

#include <QAbstractTableModel>

#include <functional>

namespace tollivar::ui {

/// The rows as numbers: it keeps their count and asks for each text when somebody reads it (a
/// screen reader, a tool tip).
///
/// Threads: the main thread.
class TaskListModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    using RowReader = std::function<RowText(int row)>;
    using NameReader = std::function<QString(int row)>;

    TaskListModel(RowReader reader, NameReader names, QObject *parent = nullptr);

    /// Rows come and go at the end.
    void setRowCount(int count);
    void setHeadings(const QStringList &headings);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    /// Finds the first row, from `start` around, whose name begins with what was typed.
    [[nodiscard]] QModelIndexList match(const QModelIndex &start, int role, const QVariant &value,
                                        int hits, Qt::MatchFlags flags) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    RowReader m_reader;
    NameReader m_names;
    QStringList m_headings;
    int m_count = 0;
};

} // namespace tollivar::ui
