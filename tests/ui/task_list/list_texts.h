#pragma once

#include <QString>

namespace tollivar::ui {

/// The English text of an id that the list asks for; any other id fails the test.
[[nodiscard]] QString englishText(const QString &id);

} // namespace tollivar::ui
