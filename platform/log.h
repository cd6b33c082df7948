#pragma once

namespace tollivar::platform {

/// Sends the log to the file that `TOLLIVAR_LOG_FILE` names, to standard error when it names none,
/// by the rules of `TOLLIVAR_LOG` (as QLoggingCategory reads them). Call once, at the start of
/// main().
void setUpLog();

/// As setUpLog(), but without a file nothing is written anywhere: for a program whose output
/// streams belong to its caller.
void logToFileOnly();

} // namespace tollivar::platform
