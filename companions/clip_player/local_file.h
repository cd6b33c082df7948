#pragma once

#include "platform/result.h"

#include <QByteArrayView>
#include <QMimeData>
#include <QString>

namespace tollivar::player {

/// What may be played: ordinary files of this computer that are not lists of other files.
///
/// Errors: AskUser, with the sentence that the person reads.

/// The absolute path of what a person, or another program, names. Looks at the file's beginning; a
/// pipe or a device is never opened.
[[nodiscard]] platform::Result<QString> playableFile(const QString &name);

/// The path of the one local file that is dragged; empty for anything else.
[[nodiscard]] QString draggedFile(const QMimeData &data);

/// Whether a file that begins so, under a name with that ending, only names other files: playlists,
/// edit lists, stream manifests and descriptions.
[[nodiscard]] bool isListOfFiles(QByteArrayView beginning, const QString &ending);

/// A file's name as a person may read it: on one line, and not longer than a line.
[[nodiscard]] QString shownName(const QString &path);

} // namespace tollivar::player
