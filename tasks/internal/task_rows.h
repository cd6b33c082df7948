#pragma once

#include "tasks/api/task_info.h"
#include "tasks/db/sqlite3_query.h"
#include "tasks/task_columns.h"

#include <array>
#include <cstddef>

namespace tollivar::tasks {

/// Reads the rows of one query into records, columns by name.
///
/// Threads: the query's.
/// Errors:  throws CppSQLite3Exception.
class TaskRowReader {
public:
    explicit TaskRowReader(const CppSQLite3Query &query);

    /// The record of the row on which the query stands, of its first `columnCount` columns. What
    /// has no column, or NULL in it, keeps its default.
    [[nodiscard]] TaskInfo read(const CppSQLite3Query &query,
                                std::size_t columnCount = kTaskColumnCount) const;

private:
    std::array<int, kTaskColumnCount> m_indexes{};
};

} // namespace tollivar::tasks
