#include "tests/support/box_watch.h"

#include "tests/support/wait_until.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QTimer>

namespace tollivar::test {

BoxWatch::BoxWatch(QMessageBox::StandardButton answer) : m_answer(answer)
{
    qApp->installEventFilter(this);
}

void BoxWatch::waitForBoxes(std::size_t count) const
{
    waitUntil("message boxes", [&] { return m_answered >= count; });
}

bool BoxWatch::eventFilter(QObject *watched, QEvent *event)
{
    auto *box = qobject_cast<QMessageBox *>(watched);
    if (box != nullptr && event->type() == QEvent::Show) {
        m_boxes.push_back({box->windowTitle(), box->text(), box->standardButtons(), box->icon()});
        if (m_look) {
            m_look(*box);
        }
        // Once it stands: its own event loop is not running yet.
        QTimer::singleShot(0, box, [this, box] { answer(*box); });
    }
    return false;
}

void BoxWatch::answer(QMessageBox &box)
{
    ++m_answered;
    if (QAbstractButton *button = box.button(m_answer)) {
        button->click();
    } else {
        box.close();
    }
}

} // namespace tollivar::test
