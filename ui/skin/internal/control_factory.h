#pragma once

#include "ui/skin/dialog_builder.h"
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

/// Whether a control is what an element of that type makes, drawn as it may be.
[[nodiscard]] bool isMadeAs(const QWidget &control, QLatin1StringView type, OptionLook look);

} // namespace internal
} // namespace tollivar::DuiLib
