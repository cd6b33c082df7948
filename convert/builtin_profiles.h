#pragma once

#include <QStringView>

#include <span>

namespace tollivar::convert {

/// The conversion profiles as text: "key = value,value", a block for each, closed by "END".
[[nodiscard]] std::span<const QStringView> builtInProfileLines();

} // namespace tollivar::convert
