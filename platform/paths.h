#pragma once

#include "platform/result.h"

#include <QString>

namespace tollivar::platform {

/// The folders of the program and of the person. All are absolute, without a trailing separator;
/// none is made here.
///
/// Threads: any; the environment must not change meanwhile.

/// Folder of the running executable, links resolved.
[[nodiscard]] QString programDirectory();

/// The person's application data: `$XDG_DATA_HOME`, else "~/.local/share".
/// Errors: AskUser when there is neither such a variable nor a home.
[[nodiscard]] Result<QString> userDataFolder();

/// What the system calls state: `$XDG_STATE_HOME`, else "~/.local/state".
/// Errors: as userDataFolder().
[[nodiscard]] Result<QString> commonDataFolder();

/// Where the program keeps its files: in the person's application data, and what concerns the
/// installation in the state folder. With a file "portable" beside the executable both are the folder
/// "data" there instead.
/// Errors: as userDataFolder().
[[nodiscard]] Result<QString> dataDirectory();
[[nodiscard]] Result<QString> commonDirectory();

/// Sockets and locks of this log-in: `$XDG_RUNTIME_DIR`; empty when there is none that is ours.
[[nodiscard]] QString runtimeFolder();

/// `XDG_DOCUMENTS_DIR` of the environment or of the desktop's settings, else "~/Documents"; the
/// home folder when that is not there.
[[nodiscard]] QString documentsFolder();

} // namespace tollivar::platform
