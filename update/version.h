#pragma once

#include <QStringView>

namespace tollivar::update {

/// Compares versions of four numbers with dots between them: above 0 when `left` is the newer one,
/// 0 when they are equal. A part is read as far as it is a number; a missing one is 0.
[[nodiscard]] int compareVersions(QStringView left, QStringView right);

} // namespace tollivar::update
