#include "ui/task_list/task_list_model.h"

#include "ui/task_list/list_columns.h"

namespace tollivar::ui {

namespace {

QString joined(const QString &first, const QString &second)
{
    return second.isEmpty() ? first : first + QStringLiteral("\n") + second;
}

QString cellText(const RowText &row, ListColumn column)
{
    switch (column) {
    case ListColumn::Number:
        return row.number;
    case ListColumn::Name:
        return joined(row.name, row.size);
    case ListColumn::Status:
        return joined(row.status, row.detail);
    case ListColumn::Speed:
        return joined(row.speed, row.timeLeft);
    case ListColumn::Target:
        return row.target;
    case ListColumn::Mode:
        return row.mode;
    }
    return {};
}

} // namespace

TaskListModel::TaskListModel(RowReader reader, NameReader names, QObject *parent)
    : QAbstractTableModel(parent)
    , m_reader(std::move(reader))
    , m_names(std::move(names))
{
}

void TaskListModel::setRowCount(int count)
{
    if (count > m_count) {
        beginInsertRows({}, m_count, count - 1);
        m_count = count;
        endInsertRows();
    } else if (count < m_count) {
        beginRemoveRows({}, count, m_count - 1);
        m_count = count;
        endRemoveRows();
    }
}

void TaskListModel::setHeadings(const QStringList &headings)
{
    m_headings = headings;
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

int TaskListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_count;
}

int TaskListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(kListColumnCount);
}

QVariant TaskListModel::data(const QModelIndex &index, int role) const
{
    const bool isText = role == Qt::DisplayRole || role == Qt::AccessibleTextRole;
    if (!index.isValid() || !isText) {
        return {};
    }
    return cellText(m_reader(index.row()), static_cast<ListColumn>(index.column()));
}

QModelIndexList TaskListModel::match(const QModelIndex &start, int /*role*/, const QVariant &value,
                                     int /*hits*/, Qt::MatchFlags /*flags*/) const
{
    const QString typed = value.toString();
    for (int step = 0; step < m_count; ++step) {
        const int row = (std::max(0, start.row()) + step) % m_count;
        if (m_names(row).startsWith(typed, Qt::CaseInsensitive)) {
            return {index(row, static_cast<int>(ListColumn::Name))};
        }
    }
    return {};
}

QVariant TaskListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    return m_headings.value(section);
}

} // namespace tollivar::ui
