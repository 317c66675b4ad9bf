#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QThread>

namespace brellin::test {

/// Runs the event loop until the condition holds. Returns false after a timeout that is only reached on failure.
template <class Condition>
bool waitUntil(Condition condition)
{
    const QDeadlineTimer patience(20'000);
    while (!condition()) {
        if (patience.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QThread::msleep(1);
    }
    return true;
}

} // namespace brellin::test
