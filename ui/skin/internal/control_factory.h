#pragma once

#include "ui/skin/skin_document.h"

#include <QLatin1StringView>

class QWidget;

namespace tollivar::DuiLib {

class CPaintManagerUI;

namespace internal {

/// Makes the widget of one element, without its attributes and children, and connects its events
/// with the manager's notifiers. Null for an element that is none.
[[nodiscard]] QWidget *makeControl(const SkinElement &element, QWidget &parent,
                                   CPaintManagerUI &manager);

/// Whether the element may hold others.
[[nodiscard]] bool isContainer(QStringView type);

/// Whether an element of that type and name is somewhere in the tree.
[[nodiscard]] bool holds(const SkinElement &tree, QLatin1StringView type, QLatin1StringView name);

} // namespace internal
} // namespace tollivar::DuiLib
