#pragma once

#include "app/window/free_moment.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <chrono>
#include <map>

class QMessageBox;

namespace tollivar::app {

/// Tells the person what went wrong with the stored tasks, one note at a time. Nothing waits for an
/// answer, and what goes wrong again and again is told once a minute.
///
/// Threads: the main thread.
/// Owns:    the note that shows, and takes it off the screen with itself.
class TroubleNotes : public QObject {
    Q_OBJECT

public:
    TroubleNotes() = default;
    ~TroubleNotes() override;
    TroubleNotes(const TroubleNotes &) = delete;
    TroubleNotes &operator=(const TroubleNotes &) = delete;

    /// Shown as soon as the event loop runs, no dialog is open and the notes before it are closed.
    void tell(const QString &text);

private:
    void showNextWhenFree();
    void showNext();
    void forgetFirst();

    QPointer<QMessageBox> m_note;
    FreeMoment m_freeMoment;
    QStringList m_waiting; ///< the first of them shows
    std::map<QString, std::chrono::steady_clock::time_point> m_told;
};

} // namespace tollivar::app
