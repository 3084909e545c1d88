// Waiting in a test for something that another process or the event loop brings.
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <functional>

namespace orm::test {

// Runs the event loop until `done` holds or `ms` have passed, resting
// `restMs` between looks (longer where a look is costly).
inline bool pumpUntil(const std::function<bool()>& done, int ms = 10000, int restMs = 2)
{
    QElapsedTimer t;
    t.start();
    while (!done()) {
        if (t.elapsed() > ms)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(restMs);
    }
    return true;
}

}  // namespace orm::test
