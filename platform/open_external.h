#pragma once

#include <QString>
#include <QStringList>

namespace tollivar::platform {

/// Opens things with the person's own programs. Nothing here waits for them: what they show, or
/// that they fail, is theirs. No shell reads any of the texts.
///
/// Threads: the main thread.
/// Errors:  false when there is nothing to open it with, or it is not of the kind asked for.

/// A web page; nothing but http and https addresses.
bool openAddress(const QString &address);
/// A file or folder, by an absolute path.
bool openPath(const QString &path);
/// The file manager with that file selected where it can, else the folder.
bool revealFile(const QString &path);
/// A program of the program directory, such as ".\ClipPlayer.exe".
bool startCompanion(const QString &name, const QStringList &arguments = {});

} // namespace tollivar::platform
