#pragma once

#include <QString>

namespace tollivar::probe {

/// The file ending of a medium, with its dot: by its media type, else by its address; empty when
/// neither tells.
[[nodiscard]] QString endingOfMedium(const QString &mediaType, const QString &address);

} // namespace tollivar::probe
