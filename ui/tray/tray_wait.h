#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>

namespace tollivar::ui {

/// Waits a while for a notification area that may come up later than the program.
///
/// Threads: the main thread.
class TrayWait final : public QObject {
    Q_OBJECT

public:
    /// Looks again and again, as no system tells of it, until `isThere` says yes or the patience
    /// is over.
    explicit TrayWait(std::function<bool()> isThere,
                      std::chrono::milliseconds patience = std::chrono::seconds(15));

Q_SIGNALS:
    /// None has come; never sent where one has.
    void givenUp();

private:
    void look();

    std::function<bool()> m_isThere;
    std::chrono::steady_clock::time_point m_end;
    QTimer m_timer;
};

} // namespace tollivar::ui
