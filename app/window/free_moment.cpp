#include "app/window/free_moment.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <utility>

namespace tollivar::app {

namespace {

bool isFree()
{
    return QApplication::activeModalWidget() == nullptr;
}

} // namespace

void FreeMoment::run(std::function<void()> action)
{
    if (m_waiting.empty() && isFree()) {
        action();
        return;
    }
    m_waiting.push_back(std::move(action));
    if (m_waiting.size() == 1) {
        // Only while something waits: every event of the program comes by.
        qApp->installEventFilter(this);
    }
}

bool FreeMoment::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Hide && watched->isWidgetType()) {
        // The code that opened the dialog goes first, and may open another.
        QTimer::singleShot(0, this, &FreeMoment::runNext);
    }
    return false;
}

void FreeMoment::runNext()
{
    if (m_waiting.empty() || !isFree()) {
        return;
    }
    const auto action = std::move(m_waiting.front());
    m_waiting.erase(m_waiting.begin());
    if (m_waiting.empty()) {
        qApp->removeEventFilter(this);
    } else {
        // Where this one opens no dialog, nothing would close either.
        QTimer::singleShot(0, this, &FreeMoment::runNext);
    }
    action();
}

} // namespace tollivar::app
