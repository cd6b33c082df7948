#pragma once

#include <QObject>

#include <functional>
#include <vector>

namespace tollivar::app {

/// Keeps what would come between a person and the dialog they are typing into until no dialog is
/// open.
///
/// Threads: the main thread.
class FreeMoment final : public QObject {
    Q_OBJECT

public:
    /// At once while no dialog is open; otherwise after the last one has closed, in the order of
    /// the calls. Forgotten when the object ends first.
    void run(std::function<void()> action);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void runNext();

    std::vector<std::function<void()>> m_waiting;
};

} // namespace tollivar::app
