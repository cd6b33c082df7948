#pragma once

#include "platform/result.h"

#include <QString>
#include <QStringList>

namespace tollivar::player {

/// Reads the arguments behind the program's name: nothing, or "-file" and what to play, as it came.
/// Errors: AskUser for an unknown option or a missing value.
[[nodiscard]] platform::Result<QString> readArguments(const QStringList &arguments);

} // namespace tollivar::player
