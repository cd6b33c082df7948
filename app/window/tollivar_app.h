#pragma once

#include "app/data_directory.h"

#include <QStringList>

#include <memory>

namespace tollivar::app {

/// The program with its window, from the start of the process to its end: one instance, the skin,
/// the data, then one run of the main window.
///
/// Threads: the main thread.
/// Owns:    everything the program has; InitInstance() returns when all of it is gone.
class CTollivarApp {
public:
    /// `arguments` begin with the program's name.
    explicit CTollivarApp(QStringList arguments);
    ~CTollivarApp();
    CTollivarApp(const CTollivarApp &) = delete;
    CTollivarApp &operator=(const CTollivarApp &) = delete;

    /// Runs the program. Always false: there is nothing left to run afterwards.
    bool InitInstance();
    /// Lets the next start be the first again.
    void ExitInstance();

private:
    struct Private;
    void runMainWindow(const DataPaths &paths);

    std::unique_ptr<Private> d;
};

} // namespace tollivar::app
