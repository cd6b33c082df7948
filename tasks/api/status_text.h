#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace tollivar::tasks {

/// A status as text; `text` has no value when the text shown so far stays.
struct StatusText {
    std::optional<QString> text;
    int kind = 2; ///< 1 for a changed record, 2 for everything else

    bool operator==(const StatusText &) const = default;
};

/// The status of an event code and its value (percent × 100, percent or bytes, by the code);
/// an unknown code gives an empty text.
[[nodiscard]] StatusText statusText(int code, std::int64_t value);

} // namespace tollivar::tasks
