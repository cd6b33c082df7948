#pragma once

#include <QRegion>
#include <QSize>

class QWidget;

namespace tollivar::ui {

/// The pixels of a window of that size with round corners: those whose middle lies inside. `corner`
/// holds the radii across and down.
[[nodiscard]] QRegion roundedRegion(QSize window, QSize corner);

/// Makes a window, before it is first shown, one whose corners can be round: partly transparent
/// where the display can blend. Elsewhere its corners will be cut, and it carries the property
/// "clipped", by which a style sheet gives it the colour of its frame: where the cut leaves half of
/// the frame's pixels, the window itself shows.
void prepareRoundCorners(QWidget &window);

/// What of a window is seen: all of it, or all but its corners where the display cannot blend and it
/// is not maximised.
[[nodiscard]] QRegion windowOutline(const QWidget &window, QSize corner);

/// Shows only this much of a window, or nothing.
void setWindowShape(QWidget &window, const QRegion &shape);

} // namespace tollivar::ui
