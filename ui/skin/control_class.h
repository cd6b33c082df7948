#pragma once

#include <QLatin1StringView>

namespace tollivar::DuiLib {

/// The property in which a control carries its class name; style sheets may select by it.
inline constexpr auto kClassProperty = "skinClass";

/// The property in which a button or label carries how wide the skin wants it at least.
inline constexpr auto kLeastWidthProperty = "leastWidth";

inline constexpr QLatin1StringView kButtonClass{"ButtonUI"};
inline constexpr QLatin1StringView kOptionClass{"OptionUI"};
inline constexpr QLatin1StringView kTextClass{"TextUI"};

} // namespace tollivar::DuiLib
