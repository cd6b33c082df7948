#pragma once

#include "tasks/api/task_info.h"

#include <QString>
#include <QStringView>

#include <array>
#include <cstddef>
#include <cstdint>
#include <variant>

namespace tollivar::tasks {

/// Text columns that can be updated alone. The numbers are field codes: never renumber.
enum class TextColumn : int {
    DownloadUrl = 0,
    FileType = 3,
    Cookies = 4,
    Agent = 5,
    Referer = 6,
    OutputName = 7,
};

/// Number columns that can be updated alone. The numbers are field codes: never renumber.
enum class NumberColumn : int {
    Size = 1,
    DownloadSize = 2,
    FileCreated = 8,
    DownloadMode = 9, ///< the packed value
    CompletedStatus = 10,
};

/// Name of the column; empty for a code that names none.
[[nodiscard]] QStringView columnName(TextColumn column);
[[nodiscard]] QStringView columnName(NumberColumn column);

/// Stands for both halves of the download mode, which are stored as one number.
struct PackedDownloadMode {};

/// The part of a record that a column holds.
using TaskField = std::variant<QString TaskInfo::*, QString ConversionOptions::*, int TaskInfo::*,
                               std::uint32_t TaskInfo::*, PackedDownloadMode>;

struct TaskColumn {
    QStringView name;
    TaskField field;
};

inline constexpr std::size_t kTaskColumnCount = 33;
/// The leading columns that older task tables and lists had already.
inline constexpr std::size_t kOlderColumnCount = 25;

/// The columns of the task table in their order; see docs/formats/database.md.
extern const std::array<TaskColumn, kTaskColumnCount> kTaskColumns;

[[nodiscard]] bool isTextColumn(const TaskColumn &column);

/// The column's value as text; numbers in signed decimal form, kUnknownSize as -1.
[[nodiscard]] QString columnText(const TaskInfo &task, const TaskColumn &column);

/// Sets the field from stored text. Numbers take the digits that lead the text, 0 when there are
/// none; both the signed and the unsigned form of a size are understood; what 32 bits cannot hold
/// becomes the nearest value that they can.
void setColumnText(TaskInfo &task, const TaskColumn &column, const QString &text);

} // namespace tollivar::tasks
