#pragma once

#include <QMargins>
#include <QSize>
#include <QStringView>

#include <optional>

namespace tollivar::DuiLib::internal {

/// Attribute values of skin files; nothing for a text that is not of the form.

/// 0 to 10,000.
[[nodiscard]] std::optional<int> number(QStringView text);
/// "true" or "false".
[[nodiscard]] std::optional<bool> flag(QStringView text);
/// "width,height".
[[nodiscard]] std::optional<QSize> size(QStringView text);
/// "left,top,right,bottom".
[[nodiscard]] std::optional<QMargins> margins(QStringView text);
/// "left", "right", "center" or "top".
[[nodiscard]] std::optional<Qt::Alignment> alignment(QStringView text);

} // namespace tollivar::DuiLib::internal
