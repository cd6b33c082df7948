#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <chrono>
#include <map>

namespace tollivar::app {

/// Tells the person what went wrong with the stored tasks, one note at a time. Nothing waits for an
/// answer, and what goes wrong again and again is told once a minute.
///
/// Threads: the main thread.
class TroubleNotes : public QObject {
    Q_OBJECT

public:
    /// Shown as soon as the event loop runs and the notes before it are closed.
    void tell(const QString &text);

private:
    void showNext();
    void forgetFirst();

    QStringList m_waiting;
    std::map<QString, std::chrono::steady_clock::time_point> m_told;
};

} // namespace tollivar::app
