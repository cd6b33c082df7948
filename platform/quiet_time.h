#pragma once

#include <functional>

class QObject;

namespace tollivar::platform {

/// Whether the desktop lets programs catch the person's eye now.
enum class Notices { Welcome, Unwanted };

/// Asks the desktop whether the person has switched notices off ("do not disturb"), and tells
/// `answer`. They are welcome wherever that cannot be asked or nobody says otherwise in time.
///
/// Threads: the main thread. Never waits: `answer` always comes later, from the event loop, after
///          half a second at most; it never comes once `context` is gone.
void askForQuietTime(QObject *context, std::function<void(Notices)> answer);

} // namespace tollivar::platform
