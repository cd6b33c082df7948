#pragma once

#include "ui/skin/paint_manager.h"

#include <QPoint>
#include <QSize>
#include <Qt>

namespace tollivar::ui {

/// What a place of a skinned window does when it is dragged.
struct HitArea {
    enum class Kind { Client, Caption, Edge };
    Kind kind = Kind::Client;
    Qt::Edges edges{}; ///< of Kind::Edge; two of them are a corner

    bool operator==(const HitArea &) const = default;
};

/// The edges that are live at `position` of a window of that size: the whole top and bottom bands,
/// whose ends are the corners, then the side bands. A corner reaches as far as it is round.
[[nodiscard]] HitArea edgeAt(QPoint position, QSize window, const QMargins &sizeBox,
                             QSize roundCorner);

/// Whether `position` lies in the caption band.
[[nodiscard]] bool isInCaption(QPoint position, QSize window, const QMargins &caption);

/// What a control inside the caption band makes of it: buttons and options are clicked, a text is
/// part of the caption only under the name "textCaption", everything else is caption.
[[nodiscard]] bool dragsWindow(const QString &className, const QString &name);

/// All of the above; a maximised window has no live edges.
[[nodiscard]] HitArea hitTest(const DuiLib::CPaintManagerUI &manager, QPoint position, QSize window,
                              bool isMaximised);

} // namespace tollivar::ui
