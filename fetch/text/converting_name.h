#pragma once

#include <QString>

namespace tollivar::fetch {

/// Where a file stands while it is being converted: beside the finished one, hidden, with its type
/// last. Whoever ends a conversion early removes it.
[[nodiscard]] QString convertingPath(const QString &outputPath);

} // namespace tollivar::fetch
