#pragma once

#include <QRect>

namespace tollivar::ui {

/// Where popups rest in a work area: the first in its lower right corner, each next one above, and
/// on the left of a full column another. Once the area is full they begin anew.
///
/// Pure functions; places are counted from 0.
[[nodiscard]] QRect popupPlace(int place, QSize popup, const QRect &workArea);

} // namespace tollivar::ui
