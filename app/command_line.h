#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tollivar::app {

/// The address that a command line brings, unchecked: arguments behind the program's name are name
/// and value, pair by pair; the first pair named "-url", in any case, counts. A desktop that opens a
/// link "tollivar:ADDRESS" passes it on whole; only the address in it is given.
[[nodiscard]] std::optional<QString> addressOf(const QStringList &arguments);

} // namespace tollivar::app
