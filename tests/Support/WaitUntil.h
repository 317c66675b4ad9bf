#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QThread>

namespace brellin::test {

/// Lets the event loop work until the condition holds. False when it does not within a time that only a fault takes.
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
