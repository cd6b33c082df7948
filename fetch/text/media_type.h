#pragma once

#include <QByteArrayView>
#include <QString>

namespace tollivar::fetch {

/// The file ending, with its dot, of a media type such as "video/mp4; codecs=…"; empty for a type
/// that is not known to be media.
[[nodiscard]] QString typeForMedia(QByteArrayView mediaType);

} // namespace tollivar::fetch
