#pragma once

#include "tasks/db/sqlite3_exception.h"

#include <QString>

namespace tollivar::test {

/// The message of the exception that `operation` throws; empty when it throws none.
template<typename Operation>
QString messageOf(Operation operation)
{
    try {
        static_cast<void>(operation());
    } catch (const tasks::CppSQLite3Exception &error) {
        return error.errorMessage();
    }
    return {};
}

/// As above, for an operation without a result.
template<typename Operation>
requires std::is_void_v<std::invoke_result_t<Operation>> QString messageOf(Operation operation)
{
    return messageOf([&operation] {
        operation();
        return 0;
    });
}

} // namespace tollivar::test
