#include "tests/support/wait_until.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include <gtest/gtest.h>

namespace tollivar::test {

bool waitUntil(const char *what, const std::function<bool()> &condition,
               std::chrono::milliseconds limit)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > limit.count()) {
            ADD_FAILURE() << "waited in vain for: " << what;
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(1);
    }
    return true;
}

} // namespace tollivar::test
