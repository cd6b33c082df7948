#include "tasks/internal/task_rows.h"

namespace tollivar::tasks {

namespace {

constexpr int kNoColumn = -1;

/// Looked up once for all rows: asking the query by name for each value costs more than reading it.
int indexOf(const CppSQLite3Query &query, QStringView name)
{
    for (int index = 0; index < query.numFields(); ++index) {
        if (query.fieldName(index) == name) {
            return index;
        }
    }
    return kNoColumn;
}

} // namespace

TaskRowReader::TaskRowReader(const CppSQLite3Query &query)
{
    std::transform(kTaskColumns.begin(), kTaskColumns.end(), m_indexes.begin(),
                   [&query](const TaskColumn &column) { return indexOf(query, column.name); });
}

TaskInfo TaskRowReader::read(const CppSQLite3Query &query, std::size_t columnCount) const
{
    TaskInfo task;
    for (std::size_t column = 0; column < columnCount; ++column) {
        const int index = m_indexes.at(column);
        if (index != kNoColumn && !query.fieldIsNull(index)) {
            setColumnText(task, kTaskColumns.at(column), query.fieldValue(index));
        }
    }
    return task;
}

} // namespace tollivar::tasks
