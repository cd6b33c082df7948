#include "ui/notify/popup_places.h"

#include <algorithm>

namespace tollivar::ui {

QRect popupPlace(int place, QSize popup, const QRect &workArea)
{
    /// Between two popups, and none at the edges of the screen.
    constexpr int kGap = 8;
    const QSize step = popup + QSize(kGap, kGap);
    const int rows = std::max(1, (workArea.height() + kGap) / step.height());
    const int columns = std::max(1, (workArea.width() + kGap) / step.width());
    const int column = place / rows % columns;
    QRect rest(QPoint(), popup);
    rest.moveBottomRight(workArea.bottomRight() -
                         QPoint(column * step.width(), place % rows * step.height()));
    return rest;
}

} // namespace tollivar::ui
