#include "ui/dialog/hit_test.h"

#include "ui/skin/control_class.h"

#include <algorithm>

namespace tollivar::ui {

namespace {

Qt::Edges sideAt(int x, int width, const QMargins &sizeBox)
{
    if (x < sizeBox.left()) {
        return Qt::LeftEdge;
    }
    return x >= width - sizeBox.right() ? Qt::Edges(Qt::RightEdge) : Qt::Edges();
}

} // namespace

HitArea edgeAt(QPoint position, QSize window, const QMargins &sizeBox, QSize roundCorner)
{
    const bool isTop = position.y() < sizeBox.top();
    const bool isBottom = position.y() >= window.height() - sizeBox.bottom();
    Qt::Edges edges = sideAt(position.x(), window.width(), sizeBox);
    if (isTop || isBottom) {
        const int reach = std::max(0, roundCorner.width());
        edges = sideAt(position.x(), window.width(), sizeBox + QMargins(reach, 0, reach, 0));
        edges |= isTop ? Qt::TopEdge : Qt::BottomEdge;
    }
    return edges == Qt::Edges() ? HitArea{} : HitArea{HitArea::Kind::Edge, edges};
}

bool isInCaption(QPoint position, QSize window, const QMargins &caption)
{
    return position.x() >= caption.left() && position.x() < window.width() - caption.right() &&
           position.y() >= caption.top() && position.y() < caption.bottom();
}

bool dragsWindow(const QString &className, const QString &name)
{
    if (className == DuiLib::kButtonClass || className == DuiLib::kOptionClass) {
        return false;
    }
    return className != DuiLib::kTextClass || name == QStringLiteral("textCaption");
}

HitArea hitTest(const DuiLib::CPaintManagerUI &manager, QPoint position, QSize window,
                bool isMaximised)
{
    if (!isMaximised) {
        const HitArea edge =
            edgeAt(position, window, manager.GetSizeBox(), manager.GetRoundCorner());
        if (edge.kind == HitArea::Kind::Edge) {
            return edge;
        }
    }
    if (!isInCaption(position, window, manager.GetCaptionRect())) {
        return {};
    }
    const QWidget *control = manager.FindControl(position);
    const bool drags =
        control != nullptr &&
        dragsWindow(DuiLib::CPaintManagerUI::GetClass(*control), control->objectName());
    return {drags ? HitArea::Kind::Caption : HitArea::Kind::Client, {}};
}

} // namespace tollivar::ui
