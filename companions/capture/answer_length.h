#pragma once

#include <QStringView>

#include <cstdint>
#include <optional>

namespace tollivar::capture {

/// The bytes of the whole file that an answer is about, also when it brings a part of it: what
/// stands behind the slash of its "Content-Range", else its "Content-Length". Nothing when the
/// server does not say, or no number.
[[nodiscard]] std::optional<std::int64_t> lengthOfAnswer(QStringView contentRange,
                                                         QStringView contentLength);

} // namespace tollivar::capture
