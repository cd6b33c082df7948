#pragma once

#include "ui/task_list/row_text.h"

#include <QDateTime>

namespace tollivar::ui {

/// What a person can send with a question about a task: addresses, what was asked for, how far it
/// came and why it ended. Passwords in addresses and what cookies hold are left out. Pure.
[[nodiscard]] QString taskDetails(const RowSource &source, const TextLookup &texts,
                                  const QDateTime &now);

} // namespace tollivar::ui
