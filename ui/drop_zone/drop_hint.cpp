#include "ui/drop_zone/drop_hint.h"

#include <QScreen>

#include <algorithm>

namespace tollivar::ui {

namespace {

constexpr int kGap = 6;

} // namespace

QPoint placeBeside(const QRect &window, QSize size, const QRect &area)
{
    const int below = window.bottom() + 1 + kGap;
    const int top =
        below + size.height() <= area.bottom() + 1 ? below : window.top() - kGap - size.height();
    const int middle = window.center().x() - size.width() / 2;
    const int left = std::min(middle, area.right() + 1 - size.width());
    return {std::max(left, area.left()), top};
}

DropHint::DropHint(QWidget &zone)
    : QLabel(&zone, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput)
{
    setObjectName(QStringLiteral("dropHint"));
    setProperty("look", QStringLiteral("tip"));
    setAttribute(Qt::WA_ShowWithoutActivating);
}

void DropHint::showBeside(const QRect &zone, const QString &text)
{
    setText(text);
    adjustSize();
    move(placeBeside(zone, size(), parentWidget()->screen()->availableGeometry()));
    show();
}

} // namespace tollivar::ui
