#include "ui/dialog/round_corners.h"

#include "platform/compositor.h"

#include <QGuiApplication>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace tollivar::ui {

namespace {

bool canBlend()
{
    static const bool can = QGuiApplication::platformName() == QStringLiteral("xcb")
                                ? platform::isDisplayComposited()
                                : QGuiApplication::platformName() != QStringLiteral("offscreen");
    return can;
}

} // namespace

QRegion roundedRegion(QSize window, QSize corner)
{
    constexpr double kMiddle = 0.5;
    const QSize radii = corner.boundedTo(window / 2);
    QRegion region(0, radii.height(), window.width(), window.height() - 2 * radii.height());
    for (int line = 0; line < radii.height(); ++line) {
        const double rise = (radii.height() - line - kMiddle) / radii.height();
        const double cut = radii.width() * (1 - std::sqrt(1 - rise * rise));
        const int left = std::max(0, static_cast<int>(std::ceil(cut - kMiddle)));
        const int width = window.width() - 2 * left;
        region += QRect(left, line, width, 1);
        region += QRect(left, window.height() - 1 - line, width, 1);
    }
    return region;
}

void prepareRoundCorners(QWidget &window)
{
    if (canBlend()) {
        window.setAttribute(Qt::WA_TranslucentBackground);
    } else {
        window.setProperty("clipped", true);
    }
}

QRegion windowOutline(const QWidget &window, QSize corner)
{
    const bool isSquare = window.testAttribute(Qt::WA_TranslucentBackground) || corner.isNull() ||
                          window.isMaximized();
    return isSquare ? QRegion(window.rect()) : roundedRegion(window.size(), corner);
}

void setWindowShape(QWidget &window, const QRegion &shape)
{
    if (shape == QRegion(window.rect())) {
        window.clearMask();
    } else {
        // An empty mask would be none.
        window.setMask(shape.isEmpty() ? QRegion(-1, -1, 1, 1) : shape);
    }
}

} // namespace tollivar::ui
