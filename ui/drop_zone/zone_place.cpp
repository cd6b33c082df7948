#include "ui/drop_zone/zone_place.h"

#include <QStringList>

#include <algorithm>
#include <optional>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

std::optional<QPoint> read(const QString &stored)
{
    const QStringList parts = stored.split(u',');
    if (parts.size() != 2) {
        return std::nullopt;
    }
    bool isX = false;
    bool isY = false;
    const QPoint place(parts[0].toInt(&isX), parts[1].toInt(&isY));
    return isX && isY ? std::optional(place) : std::nullopt;
}

} // namespace

QString storedZonePlace(QPoint place)
{
    return u"%1,%2"_s.arg(place.x()).arg(place.y());
}

QPoint zonePlace(const QString &stored, QSize zone, const std::vector<QRect> &areas)
{
    const auto place = read(stored);
    if (place && std::any_of(areas.begin(), areas.end(), [&](const QRect &area) {
            return area.contains(QRect(*place, zone));
        })) {
        return *place;
    }
    constexpr int kFromEdge = 24;
    const QRect &area = areas.front();
    return {area.right() + 1 - kFromEdge - zone.width(), area.top() + area.height() / 4};
}

} // namespace tollivar::ui
