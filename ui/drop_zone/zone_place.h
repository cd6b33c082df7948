#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

#include <vector>

namespace tollivar::ui {

/// The place as it is stored: "x,y" in pixels of the desktop.
[[nodiscard]] QString storedZonePlace(QPoint place);

/// Where a zone of that size stands: at its stored place, if all of it is on one of the screens;
/// else at the right edge of the first, below where windows have their buttons. `areas` are the
/// screens' work areas, at least one. Pure.
[[nodiscard]] QPoint zonePlace(const QString &stored, QSize zone, const std::vector<QRect> &areas);

} // namespace tollivar::ui
