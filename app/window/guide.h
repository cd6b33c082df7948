#pragma once

#include <QString>

namespace tollivar::app {

/// Opens the guide of the folder `help` in that directory with the person's browser; where there is
/// none, the page on the web that stands for it. False when neither can be opened.
///
/// Threads: the main thread; never waits for the browser.
bool openGuide(const QString &directory);

} // namespace tollivar::app
