#pragma once

#include <QString>

class QWidget;

namespace tollivar::DuiLib::internal {

/// What became of an attribute.
enum class AttributeResult {
    Applied,
    Unknown, ///< no control has such an attribute
    Unfit    ///< this control has none, or the value is not of its form
};

[[nodiscard]] AttributeResult applyAttribute(QWidget &control, const QString &name,
                                             const QString &value);

} // namespace tollivar::DuiLib::internal
